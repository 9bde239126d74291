// What the completion scripts do with the table of words that takes the place of TABLE. Both walk over the words before
// the one to complete, to find the command that they lead to and the place behind it.
#pragma once

namespace usbdevctl {

inline constexpr char kBashScript[] = R"script(# bash completion for usbdevctl, printed by 'usbdevctl completion bash'

# Prints the words that may stand at a place; fails where there is no such place.
_usbdevctl_words() {
  case $1 in
    TABLE
    *) return 1 ;;
  esac
}

_usbdevctl() {
  local command=usbdevctl option='' position=1 current=${COMP_WORDS[COMP_CWORD]} word words i
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    if [[ $word == = ]]; then
      continue
    elif [[ -n $option ]]; then
      option=''
    elif [[ $word == -* ]]; then
      if _usbdevctl_words "$command $word" >/dev/null; then option="$command $word"; fi
    elif _usbdevctl_words "$command $word" >/dev/null; then
      command="$command $word"
    else
      position=$((position + 1))
    fi
  done
  if [[ $current == = ]]; then current=''; fi
  if [[ -n $option ]]; then
    words=$(_usbdevctl_words "$option")
  else
    words=$(_usbdevctl_words "$command"; _usbdevctl_words "$command #$position")
    if [[ $current == -* || -z ${words//[[:space:]]/} ]]; then words=$(_usbdevctl_words "$command #options"); fi
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -F _usbdevctl usbdevctl
)script";

inline constexpr char kZshScript[] = R"script(#compdef usbdevctl
# zsh completion for usbdevctl, printed by 'usbdevctl completion zsh'

# Puts the words that may stand at a place into 'reply', each with what it means; fails where there is no such place.
_usbdevctl_words() {
  case $1 in
    TABLE
    *) reply=(); return 1 ;;
  esac
}

_usbdevctl() {
  local command=usbdevctl option='' current=$words[CURRENT] word
  local -i position=1 i
  local -a reply found
  for ((i = 2; i < CURRENT; i++)); do
    word=$words[i]
    if [[ -n $option ]]; then
      option=''
    elif [[ $word == -* ]]; then
      if _usbdevctl_words "$command $word"; then option="$command $word"; fi
    elif _usbdevctl_words "$command $word"; then
      command="$command $word"
    else
      position+=1
    fi
  done
  if [[ -z $option && $current == --*=* ]]; then
    option="$command ${current%%=*}"
    compset -P '*='
  fi
  if [[ -n $option ]]; then
    _usbdevctl_words "$option"
    found=($reply)
  else
    _usbdevctl_words "$command"
    found=($reply)
    _usbdevctl_words "$command #$position"
    found+=($reply)
    if [[ $current == -* || $#found -eq 0 ]]; then
      _usbdevctl_words "$command #options"
      found=($reply)
    fi
  fi
  _describe usbdevctl found
}

if [[ $funcstack[1] == _usbdevctl ]]; then
  _usbdevctl "$@"
else
  compdef _usbdevctl usbdevctl
fi
)script";

}  // namespace usbdevctl
