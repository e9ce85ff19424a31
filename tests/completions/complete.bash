# Prints what bash offers at the end of each command line:
#
#   bash complete.bash COMPLETIONS LINE...
set -eu
source "$1/bash-completion/completions/quarry"
shift

# Cuts a line as readline does: equals signs and colons are words of their own.
cut_line() {
  local word
  COMP_WORDS=()
  for word in ${1//[=]/ = }; do COMP_WORDS+=("$word"); done
  if [[ $1 == *' ' ]]; then COMP_WORDS+=(''); fi
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
}

for line in "$@"; do
  cut_line "$line"
  COMP_LINE=$line
  COMP_POINT=${#line}
  _quarry || true  # compopt fails where nobody presses a key
  for candidate in "${COMPREPLY[@]}"; do
    eval "candidate=$candidate"  # brackets are offered with backslashes
    printf '%s\t%s\n' "$line" "$candidate"
  done
done
