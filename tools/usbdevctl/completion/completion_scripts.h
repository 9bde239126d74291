// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the completion scripts do with the table of words that takes the place of TABLE. All walk over the words before
// the one to complete, to find the command that they lead to and the place after it.
#pragma once

namespace usbdevctl {

inline constexpr char kBashScript[] = R"script(# bash completion for usbdevctl, printed by 'usbdevctl completion bash'

# Prints the names that the host's cameras have now.
_usbdevctl_host() { usbdevctl __words "$1" 2>/dev/null | cut -f1; }

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

# Puts the names that the host's cameras have now into 'reply', each with its camera.
_usbdevctl_host() {
  reply=(${(f)"$(usbdevctl __words $1 2>/dev/null)"})
  reply=(${reply/$'\t'/:})
}

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

inline constexpr char kFishScript[] = R"script(# fish completion for usbdevctl, printed by 'usbdevctl completion fish'

# Prints the words that may stand at a place, each with what it means; fails where there is no such place.
function __usbdevctl_words
  switch $argv[1]
    TABLE
    case '*'
      return 1
  end
end

function __usbdevctl_complete
  set -l command usbdevctl
  set -l option ''
  set -l position 1
  set -l current (commandline -ct)
  set -l words (commandline -opc)
  for word in $words[2..-1]
    if test -n "$option"
      set option ''
    else if string match -q -- '-*' $word
      if __usbdevctl_words "$command $word" >/dev/null 2>/dev/null
        set option "$command $word"
      end
    else if __usbdevctl_words "$command $word" >/dev/null 2>/dev/null
      set command "$command $word"
    else
      set position (math $position + 1)
    end
  end
  set -l given ''
  if test -z "$option"; and string match -q -- '--*=*' $current
    set given (string replace -r -- '=.*' '=' $current)
    set option "$command "(string replace -- '=' '' $given)
  end
  set -l found
  if test -n "$option"
    set found (__usbdevctl_words $option 2>/dev/null)
  else
    set found (__usbdevctl_words $command 2>/dev/null; __usbdevctl_words "$command #$position" 2>/dev/null)
    if string match -q -- '-*' $current; or test -z "$found"
      set found (__usbdevctl_words "$command #options")
    end
  end
  for word in $found
    echo $given$word
  end
end

complete -c usbdevctl -f -a '(__usbdevctl_complete)'
)script";

}  // namespace usbdevctl
