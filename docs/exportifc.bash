# Completion of exportifc for bash; made by exportifc --completion, do not edit.
_exportifc() {
  local current=${COMP_WORDS[COMP_CWORD]} words
  case ${COMP_WORDS[1]} in
    export) words="-h --help --json -o --output --out-dir --visible-only --transliterate --bounding-rectangle --strict --html --template -j --jobs -q --quiet" ;;
    check) words="-h --help --json --visible-only --bounding-rectangle --no-notes" ;;
    profiles) words="-h --help --json --svg --markdown 'ILAM' 'CS' '][' '[' '[]' 'UENR' 'UUE' 'IENR' 'CA' 'BOX' 'L' 'LLM' 'LLM_EN' 'LFF' 'LLAM_EN' '2L' 'LL' '><' '<>' 'LX' 'LZ' 'CART' 'ICAR' 'TUBO' 'Z' 'ZS' 'ZI' 'ZSI' 'LLAM' '2LLM' 'LLLM' 'VVLM' 'LVLM' 'LXLM' 'LZLM' 'ULAM' 'UAP' 'UULM' '2ULM' 'TEE' 'RED' 'FRED' 'W' 'HP' 'PS' 'VS' 'VSE' 'CSE' 'CVS' 'TW' 'TS' 'WT' 'PC' 'HE' 'IPE' 'PSA' 'EC' 'RET' '2L_ASSIMETRICO'" ;;
    sections) words="-h --help --json --depth --mass --markdown IPE HEA HEB HEM UPN UPE L W HP CHS SHS RHS" ;;
    convert) words="-h --help --json -o --output --strict --bounding-rectangle" ;;
    view) words="-h --help --json -o --output --template --visible-only --transliterate --bounding-rectangle --no-notes" ;;
    takeoff) words="-h --help --json -o --output --density --visible-only --bounding-rectangle --cuts -q --quiet" ;;
    template) words="-h --help --json" ;;
    *) words="export check profiles sections convert view takeoff template -h --help --version" ;;
  esac
  if [[ $COMP_CWORD -gt 1 && $current != -* && ${COMP_WORDS[1]} != profiles && ${COMP_WORDS[1]} != sections ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
}
complete -o filenames -F _exportifc exportifc
