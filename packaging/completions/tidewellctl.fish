# Completes the arguments of tidewellctl.
set -l verbs status follow processes speedtest open quit
set -l none "not __fish_seen_subcommand_from $verbs"

complete -c tidewellctl -f
complete -c tidewellctl -n $none -a status -d 'Print the present values'
complete -c tidewellctl -n $none -a follow -d 'Print a line for each change'
complete -c tidewellctl -n $none -a processes -d 'List the programs that use the network'
complete -c tidewellctl -n $none -a speedtest -d 'Run a speed test and print the result'
complete -c tidewellctl -n $none -a open -d 'Open a window'
complete -c tidewellctl -n $none -a quit -d 'End Tidewell'
complete -c tidewellctl -n $none -l version -d 'Print the version'
complete -c tidewellctl -n $none -l help -d 'Print the usage'
complete -c tidewellctl -n '__fish_seen_subcommand_from status processes speedtest' -l json -d 'Print JSON'
complete -c tidewellctl -n '__fish_seen_subcommand_from follow' -l format -x \
  -a 'plain json waybar i3bar polybar' -d 'The form of a line'
complete -c tidewellctl -n '__fish_seen_subcommand_from open' -a 'panel details settings'
complete -c tidewellctl -n '__fish_seen_subcommand_from status follow processes speedtest open' -l start \
  -d 'Start Tidewell if it is not running'
