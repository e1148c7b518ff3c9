# fish completion for tindrel-builder

complete -c tindrel-builder -f
complete -c tindrel-builder -n __fish_use_subcommand -a scan -d 'say whether it is a game and what it holds'
complete -c tindrel-builder -n __fish_use_subcommand -a analyze -d 'judge it and write reports'
complete -c tindrel-builder -n __fish_use_subcommand -a audit -d 'judge it, and show what a port does natively'
complete -c tindrel-builder -n __fish_use_subcommand -a convert -d 'write a port'
complete -c tindrel-builder -n __fish_use_subcommand -a build -d 'write a port and compile it'
complete -c tindrel-builder -n __fish_use_subcommand -a watch -d 'do so again whenever the game changes'
complete -c tindrel-builder -n __fish_use_subcommand -a repair -d 'gather all issues and their files'
complete -c tindrel-builder -n __fish_use_subcommand -a package -d 'compile a port and pack a portable ZIP'
complete -c tindrel-builder -n __fish_use_subcommand -a test -d 'check the files of a port and compile it'
complete -c tindrel-builder -n __fish_use_subcommand -l help -d 'show a summary'
complete -c tindrel-builder -n __fish_use_subcommand -l version -d 'show the version'

complete -c tindrel-builder -n 'not __fish_use_subcommand' -a '(__fish_complete_directories)'
complete -c tindrel-builder -n 'not __fish_use_subcommand; and not __fish_seen_subcommand_from package test' -k -a '(__fish_complete_suffix .zip .rar .pak .ZIP .RAR .PAK)'
complete -c tindrel-builder -n '__fish_seen_subcommand_from watch' -l run -d 'start the port, and again after each build'
complete -c tindrel-builder -n '__fish_seen_subcommand_from package' -l windows -d 'for Windows, on another system'
complete -c tindrel-builder -n '__fish_seen_subcommand_from test' -l playtest -r -F -d 'report of a bot'
complete -c tindrel-builder -n 'not __fish_use_subcommand; and not __fish_seen_subcommand_from package' -l as-written -d 'take every line to the letter'
