# Prints what zsh offers at the end of each command line:
#
#   zsh -f complete.zsh COMPLETIONS LINE...
#
# Completion needs a line editor, and so a terminal: a second shell runs on one, and leaves what it is
# offered in a file.
emulate -L zsh
zmodload zsh/zpty

export OFFERED=$(mktemp) COMPLETIONS=$1
export LINES_TO_COMPLETE=${(F)@[2,-1]}
inner=$(mktemp)

cat >$inner <<'END'
fpath=($COMPLETIONS/zsh/site-functions $fpath)
autoload -Uz compinit && compinit -D -u
zstyle ':completion:*' verbose no
zstyle ':completion:*' sort no

# Notes the words that are offered, unless they only go into an array.
compadd() {
  local -a found
  if [[ ${@[1,(i)(-|--)]} != *-(O|A|D)\ * ]]; then
    builtin compadd -O found "$@"
    (($#found)) && print -rl -- $LINE_TO_COMPLETE$'\t'$^found >>$OFFERED
  fi
  builtin compadd "$@"
}

zle -C offer list-choices _main_complete
complete-lines() {
  for LINE_TO_COMPLETE in ${(f)LINES_TO_COMPLETE}; do
    BUFFER=$LINE_TO_COMPLETE
    CURSOR=$#BUFFER
    zle offer
  done
  exit
}
zle -N zle-line-init complete-lines
END

{
  zpty shell "TERM=dumb zsh -f -i"
  zpty -w shell "source $inner"
  while zpty -r shell ignored; do :; done
  cat $OFFERED
} always {
  rm -f $OFFERED $inner
}
