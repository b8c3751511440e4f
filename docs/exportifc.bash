# Completion of exportifc for bash; made by exportifc --completion, do not edit.
_exportifc() {
  local current=${COMP_WORDS[COMP_CWORD]} words
  case ${COMP_WORDS[1]} in
    export) words="-h --help -o --output --out-dir --visible-only --strict --transliterate --html --template -j --jobs -q --quiet" ;;
    check) words="-h --help --visible-only --json" ;;
    profiles) words="-h --help --svg --markdown" ;;
    convert) words="-h --help -o --output --strict" ;;
    view) words="-h --help -o --output --template --visible-only --transliterate" ;;
    *) words="export check profiles convert view -h --help --version" ;;
  esac
  if [[ $COMP_CWORD -gt 1 && $current != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
}
complete -o filenames -F _exportifc exportifc
