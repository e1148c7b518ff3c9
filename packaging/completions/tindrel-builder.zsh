#compdef tindrel-builder

_tindrel_builder_game() {
  _alternative 'folders:game folder:_files -/' \
    'archives:game archive:_files -g "*.(#i)(zip|rar|pak)(-.)"'
}

_tindrel_builder() {
  local curcontext=$curcontext state line
  local letter='--as-written[take every line to the letter]'
  local -a commands=(
    'scan:say whether it is a game and what it holds'
    'analyze:judge it and write reports'
    'audit:judge it, and show what a port does natively'
    'convert:write a port'
    'build:write a port and compile it'
    'watch:do so again whenever the game changes'
    'repair:gather all issues and their files'
    'package:compile a port and pack a portable ZIP'
    'test:check the files of a port and compile it'
  )
  _arguments -C '(- *)--help[show a summary]' '(- *)--version[show the version]' \
    '1:command:->command' '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $words[1] in
        scan|audit) _arguments $letter '1:game:_tindrel_builder_game' ;;
        watch)
          _arguments $letter '--run[start the port, and again after each build]' \
            '1:game:_tindrel_builder_game' '2:port:_files -/'
          ;;
        package) _arguments '--windows[pack for Windows]' '1:port:_files -/' ;;
        test) _arguments $letter '--playtest=[report of a bot]:report:_files' '1:port:_files -/' ;;
        *) _arguments $letter '1:game:_tindrel_builder_game' '2:folder:_files -/' ;;
      esac
      ;;
  esac
}

_tindrel_builder "$@"
