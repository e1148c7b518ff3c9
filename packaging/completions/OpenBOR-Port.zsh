#compdef OpenBOR-Port

_arguments \
  '(--diagnose --diagnostic)'{--diagnose,--diagnostic}'[check the files of the port and end]' \
  '--smoke-game[play by itself for 600 frames]' \
  '--smoke-frames=[play by itself]:frames, 60 to 3600: ' \
  '--capture=[write frames of play as PNG]:folder:_files -/' \
  '--capture-every=[write every n-th frame]:n: ' \
  '--record=[write down what the players do]:file:_files' \
  '--replay=[play such a file]:file:_files' \
  '--autoplay=-[let a bot play the campaign]::stages: ' \
  '--autoplay-lives=[give the bot more lives]:lives: ' \
  '--autoplay-report=[let a bot play, and write what it met]:file:_files' \
  '(- *)--help[show a summary]' \
  '(- *)--version[show which builder made the port]' \
  '::folder of the game:_files -/'
