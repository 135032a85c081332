# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of sprig's command line for bash.

# The current word as the command would get it, as far as quotes and backslashes go.
_sprig_unquoted() {
  local typed=${cur#[\"\']}
  printf '%s' "${typed//\\/}"
}

# Offers the lines of standard input that begin like the current word, quoted as that word is. Bash itself
# quotes file names only, and leaves "$" alone.
_sprig_offer_titles() {
  local typed line
  typed=$(_sprig_unquoted)
  while IFS= read -r line; do
    [[ $line == "$typed"* ]] || continue
    # shellcheck disable=SC2001  # "&" in a replacement means different things to different versions of bash
    case $cur in
      \'*) line=${line//\'/\'\\\'\'} ;;
      \"*) line=$(sed 's/[\\$`"]/\\&/g' <<<"$line") ;;
      *) printf -v line %q "$line" ;;
    esac
    COMPREPLY+=("$line")
  done
}

_sprig_offer_words() { mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur"); }

# Offers folders (-d) or files (-f); "filenames" has bash quote them.
_sprig_offer_paths() {
  mapfile -t COMPREPLY < <(compgen "$1" -- "$(_sprig_unquoted)")
  compopt -o filenames 2>/dev/null
}

_sprig() {
  local words=("${COMP_WORDS[@]:0:COMP_CWORD+1}") common='-v --verbose -h --help' index operands=0
  COMPREPLY=()
  # Options may stand before a command.
  while [[ ${#words[@]} -gt 2 && (${words[1]} == -v || ${words[1]} == --verbose) ]]; do
    words=("${words[0]}" "${words[@]:2}")
  done
  # What a "=" stands between comes as three words.
  for index in "${!words[@]}"; do
    if ((index > 1)) && [[ ${words[index]} == = ]]; then unset 'words[index]'; fi
  done
  words=("${words[@]}")
  [[ ${COMP_WORDS[COMP_CWORD]} != = ]] || words+=("")
  local last=$((${#words[@]} - 1)) command=${words[1]}
  local cur=${words[last]} previous=${words[last - 1]}
  for ((index = 2; index < last; index++)); do
    [[ ${words[index]} == -* || ${words[index - 1]} == --in ]] || ((operands++))
  done
  if [[ $last -gt 1 && $command == new ]]; then
    if [[ $previous == --in ]]; then
      _sprig_offer_paths -d
    elif [[ $cur == -* ]]; then
      _sprig_offer_words "--in --dry-run $common"
    elif ((operands == 0)); then
      _sprig_offer_titles < <("${words[0]}" list --titles 2>/dev/null)
    fi
  elif [[ $last -gt 1 && $command == list ]]; then
    if [[ $cur == -* ]]; then _sprig_offer_words "--json --titles $common"; else _sprig_offer_paths -d; fi
  elif [[ $last -gt 1 && $command == detect ]]; then
    if [[ $cur == -* ]]; then _sprig_offer_words "$common"; else _sprig_offer_paths -d; fi
  elif [[ $last -gt 1 && $command == template ]]; then
    if ((operands == 0)) && [[ $cur != -* ]]; then
      _sprig_offer_words 'list show export add import edit enable disable move remove'
    elif [[ ${words[2]} == add && $cur == -* ]]; then
      _sprig_offer_words "--name $common"
    elif [[ ${words[2]} == add ]]; then
      _sprig_offer_paths -f
    elif [[ ${words[2]} == import ]]; then
      _sprig_offer_paths -d
    elif [[ ${words[2]} != list ]]; then
      _sprig_offer_titles < <("${words[0]}" template list --titles 2>/dev/null)
    fi
  elif [[ $last -gt 1 && $command == undo ]]; then
    _sprig_offer_words "--list $common"
  elif [[ $last -gt 1 && $command == config ]]; then
    if [[ $cur == -* ]]; then
      _sprig_offer_words "$common"
    elif ((operands == 0)); then
      _sprig_offer_words 'path init check'
    elif [[ $previous == check ]]; then
      _sprig_offer_paths -f
    fi
  elif [[ $cur == -* ]]; then
    _sprig_offer_words "$common --version"
  else
    _sprig_offer_paths -f
    local word
    ((last == 1)) && for word in list new detect config template undo; do
      [[ $word == "$cur"* ]] && COMPREPLY+=("$word")
    done
  fi
  return 0
}

complete -F _sprig sprig
