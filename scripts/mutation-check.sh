#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Applies each mutation of scripts/mutations.txt alone, rebuilds, runs the tests, and reports
# which mutations the suite kills. Not part of the test command: a full run takes about half an
# hour on two cores once the code is built.
#
#   scripts/mutation-check.sh [--only N,M,...|--only REGEX] [--skip-baseline] [BUILD-DIR]
#
# BUILD-DIR (or $MUTATION_BUILD_DIR) defaults to ./build; it is configured when missing.
# $MUTATION_JOBS sets the build and test jobs (2). The report goes to BUILD-DIR/mutation-report.txt,
# the output of each mutation's build and tests to BUILD-DIR/mutation-logs/.
# Exits 0 when the run completed (survivors are a finding, not a failure), non-zero when the
# baseline does not build or pass, or a line of the list cannot be applied.
set -euo pipefail
# "&" in a replacement stands for itself.
shopt -u patsub_replacement 2>/dev/null || true
root=$(cd "$(dirname "$0")/.." && pwd)
list=$root/scripts/mutations.txt
jobs=${MUTATION_JOBS:-2}
only=
baseline=1
build=${MUTATION_BUILD_DIR:-}

while (($#)); do
    case $1 in
    --only) only=${2:?--only needs numbers or a pattern}; shift 2 ;;
    --skip-baseline) baseline=0; shift ;;
    -h | --help) sed -n '3,13p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    -*) echo "unknown option $1" >&2; exit 2 ;;
    *) build=$1; shift ;;
    esac
done
build=${build:-$root/build}
[[ $build == /* ]] || build=$PWD/$build

# The list's fields are TAB-separated; in the text and its replacement "\n" is a line break,
# "\t" a tab and "\\" one backslash. Any other backslash stands for itself.
unescape() {
    local text=$1 out=''
    while [[ $text == *\\* ]]; do
        out+=${text%%\\*}
        text=${text#*\\}
        case ${text:0:1} in
        n) out+=$'\n' ;;
        t) out+=$'\t' ;;
        \\) out+='\' ;;
        *) out+="\\${text:0:1}" ;;
        esac
        text=${text:1}
    done
    printf '%s' "$out$text"
}

# The file being mutated and its untouched copy; put back on any exit, Ctrl-C included.
mutated=
saved=$(mktemp)
restore() {
    if [[ -n $mutated ]]; then
        cp "$saved" "$mutated"
        mutated=
    fi
}
trap 'restore; rm -f "$saved"' EXIT
trap 'exit 130' INT TERM

# Builds everything, or the targets the extra arguments name.
rebuild() {
    local log=$1
    shift
    cmake --build "$build" -j "$jobs" "$@" >>"$log" 2>&1
}

# Runs the tests (all, or those the extra arguments pick), stopping at the first failure. A test
# that fails is run once more: only one that fails twice counts, so a flaky test kills nothing.
# Returns 0 when all pass; 1 when a test fails, printing its name; 2 when no test could be named.
run_tests() {
    local log=$1
    shift
    ctest --test-dir "$build" -j "$jobs" --stop-on-failure --repeat until-pass:2 --timeout 900 \
        --no-tests=error --output-on-failure "$@" >>"$log" 2>&1 && return 0
    sed -n '/^The following tests FAILED:/,$p' "$log" |
        sed -En 's/^\s+[0-9]+ - ([^ ]+).*/\1/p' | head -1 | grep . || return 2
    return 1
}

# The programs (and so the build targets) that run the tests a pattern picks. Each test program
# names the programs it starts as its dependencies, so building these alone is consistent.
test_programs() {
    ctest --test-dir "$build" -R "$1" --show-only=json-v1 | python3 -c '
import json, os, sys
build = sys.argv[1] + "/"
print(" ".join(sorted({os.path.basename(argument) for test in json.load(sys.stdin)["tests"]
    for argument in test.get("command", []) if argument.startswith(build)})))' "$build"
}

# Builds and tests the mutated code. The tests named in the list's last field go first, with only
# their programs built: they fail soonest when the mutation is caught. Everything is built and
# the whole suite runs when they pass. Prints the first failing test; returns 0 when every test
# passes, 1 when one fails, 2 when the tests did not run, 3 when the code does not compile.
judge() {
    local log=$1 hint=$2 status=0 targets
    if [[ -n $hint ]]; then
        targets=$(test_programs "$hint") && [[ -n $targets ]] || return 2
        # shellcheck disable=SC2086 # one argument per target
        rebuild "$log" --target $targets || return 3
        run_tests "$log" -R "$hint" || status=$?
        ((status == 0)) || return $status
    fi
    rebuild "$log" || return 3
    run_tests "$log"
}

if [[ ! -f $build/CMakeCache.txt ]]; then
    "$root/scripts/install-deps.sh"
    launcher=()
    command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" \
        >/dev/null
fi
logs=$build/mutation-logs
mkdir -p "$logs"
report=$build/mutation-report.txt
start=$SECONDS

echo "building the unchanged code in $build"
: >"$logs/baseline.log"
if ! rebuild "$logs/baseline.log"; then
    echo "the unchanged code does not build: see $logs/baseline.log" >&2
    exit 1
fi
if ((baseline)); then
    echo "running the tests on the unchanged code"
    if ! failed=$(run_tests "$logs/baseline.log"); then
        echo "the unchanged code fails its tests (${failed:-?}): see $logs/baseline.log" >&2
        exit 1
    fi
fi

declare -A counts=([killed]=0 [survived]=0 [not-compiled]=0 [error]=0)
{
    echo "# mutation check of $(git -C "$root" rev-parse --short HEAD) on $(date -u '+%F %T UTC')"
    echo "# number, result, file: what it breaks (first failing test, or the problem)"
} >"$report"

number=0
while IFS= read -r -u 3 line || [[ -n $line ]]; do
    [[ -z ${line//[[:space:]]/} || $line == \#* ]] && continue
    number=$((number + 1))
    if [[ -n $only ]]; then
        if [[ $only =~ ^[0-9,]+$ ]]; then
            [[ ,$only, == *,$number,* ]] || continue
        else
            [[ $line =~ $only ]] || continue
        fi
    fi
    IFS=$'\t' read -r file exact replacement what hint <<<"$line"
    log=$logs/$number.log
    : >"$log"
    result=error
    detail=
    path=$root/$file
    if [[ -z $file || -z $exact || -z $what ]]; then
        detail="the line needs a file, a text, a replacement and what it breaks"
    elif [[ ! -f $path ]]; then
        detail="no file $file"
    else
        exact=$(unescape "$exact")
        replacement=$(unescape "$replacement")
        # A sentinel keeps the file's final line breaks through the command substitution.
        contents=$(cat "$path"; echo .)
        contents=${contents%.}
        without=${contents//"$exact"/}
        occurrences=$(((${#contents} - ${#without}) / ${#exact}))
        if ((occurrences != 1)); then
            detail="the text occurs $occurrences times in $file, not once"
        else
            cp "$path" "$saved"
            mutated=$path
            printf '%s' "${contents/"$exact"/"$replacement"}" >"$path"
            status=0
            detail=$(judge "$log" "$hint") || status=$?
            case $status in
            0) result=survived ;;
            1) result=killed ;;
            3) result=not-compiled ;;
            *) detail="the tests did not run: see $log" ;;
            esac
            restore
        fi
    fi
    counts[$result]=$((counts[$result] + 1))
    printf '%3d  %-12s  %s: %s%s\n' "$number" "$result" "$file" "$what" "${detail:+ ($detail)}" |
        tee -a "$report"
done 3<"$list"

echo "rebuilding the unchanged code"
: >"$logs/after.log"
rebuild "$logs/after.log" || echo "the unchanged code did not rebuild: see $logs/after.log" >&2
echo "report: $report"
summary="killed ${counts[killed]}/total $((counts[killed] + counts[survived]))"
summary+=" (not compiled ${counts[not-compiled]}, errors ${counts[error]}, $(((SECONDS - start) / 60)) min)"
echo "$summary" | tee -a "$report"
((counts[error] == 0))
