# For scripts that end with "N passed, N failed": they count by these functions and end with `end`.
# $work is a folder of the script's own, gone when it ends.
# shellcheck shell=bash

passed=0 failed=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# holds NAME COMMAND...: the command succeeds; what it says is shown when it does not.
holds() {
  local name=$1
  shift
  if "$@" >"$work/said" 2>&1; then
    ((++passed))
  else
    ((++failed))
    echo "not as it should be: $name; it said:"
    tail -n 30 "$work/said"
  fi
}

# expect NAME CODE PATTERN COMMAND...: the command ends with CODE and says PATTERN.
expect() {
  local name=$1 code=$2 pattern=$3 got
  shift 3
  "$@" >"$work/said" 2>&1
  got=$?
  # What prints nothing has no line for an empty pattern either.
  if ((got == code)) && { [[ -z $pattern ]] || grep -qE -- "$pattern" "$work/said"; }; then
    ((++passed))
  else
    ((++failed))
    echo "$name: exit code $got, expected $code and the pattern '$pattern'; it said:"
    tail -n 30 "$work/said"
  fi
}

# same NAME FOUND WANTED
same() {
  if [[ $2 == "$3" ]]; then
    ((++passed))
  else
    ((++failed))
    echo "$1: found $2, wanted $3"
  fi
}

# held_in PAGE: the exchange file that a page carries.
held_in() { sed -n 's/.*<script id="model"[^>]*>\([^<]*\)<.*/\1/p' "$1" | base64 -d | gzip -d; }

end() {
  echo "$passed passed, $failed failed"
  ((failed == 0))
}
