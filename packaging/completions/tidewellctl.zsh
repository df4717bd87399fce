#compdef tidewellctl
# Completes the arguments of tidewellctl.

local -a verbs=(
  'status:print the present values'
  'follow:print a line for each change'
  'processes:list the programs that use the network'
  'speedtest:run a speed test and print the result'
  'open:open a window'
  'quit:end Tidewell'
)
local start='--start[start Tidewell if it is not running]'
local json='--json[print JSON]'

if (( CURRENT == 2 )); then
  _describe command verbs
  _arguments '--version[print the version]' '--help[print the usage]'
  return
fi
local verb=$words[2]
shift words
(( CURRENT-- ))
case $verb in
  status|processes|speedtest) _arguments $json $start ;;
  follow) _arguments '--format=[the form of a line]:format:(plain json waybar i3bar polybar)' $start ;;
  open) _arguments $start '1:window:(panel details settings)' ;;
esac
