# shellcheck shell=bash
# Completes the arguments of tidewellctl.
_tidewellctl() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} verb='' each words
  for each in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $each in
      status | follow | processes | speedtest | open | quit) verb=$each ;;
    esac
  done
  [ "$word" = '=' ] && word=''
  if [ "$before" = --format ] || [ "$before" = '=' ]; then
    words='plain json waybar i3bar polybar'
  else
    case $verb in
      '') words='status follow processes speedtest open quit --version --help' ;;
      status | processes | speedtest) words='--json --start' ;;
      follow) words='--format --start' ;;
      open) words='panel details settings --start' ;;
      *) words='' ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _tidewellctl tidewellctl
