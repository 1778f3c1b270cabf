#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# mac_shell_test.sh ROOT   reads the scripts that run on a Mac as its bash 3.2 and BSD tools would:
# no construct of a later bash, no option that only GNU's tools have. Then it shows that each rule
# catches what it is for.
set -uo pipefail
root=$1
sandbox=$(mktemp -d)
trap 'rm -rf "$sandbox"' EXIT

scripts=("$root/run" "$root/test")
for script in "$root"/scripts/*.sh; do
  # That one drives a window on an X server.
  case "$script" in */window_session.sh) ;; *) scripts+=("$script") ;; esac
done
for script in "$root"/packaging/macos/*; do
  case "$script" in *.in | *.plist | *.entitlements | *.md) ;; *) scripts+=("$script") ;; esac
done

# A rule a line: an extended regular expression, then what it catches, with " ## " between them.
rules() {
  cat <<'END'
(^|[^A-Za-z_])(mapfile|readarray|coproc)( |$) ## mapfile -t lines <file
(declare|local|typeset) -[A-Za-z]*[Anlu] ## declare -A table
\$\{[A-Za-z_]+(,,?|\^\^?)\} ## echo "${name,,}"
\$\{[A-Za-z_]+@[A-Z]\} ## echo "${name@Q}"
\$\{[A-Za-z_]+(\[[^]]*\])?:[^}]*: -[0-9] ## echo "${name:0: -1}"
\$\{[A-Za-z_]+\[-[0-9]+\]\} ## echo "${list[-1]}"
\[\[ -[vR]  ## if [[ -v name ]]; then
&>> ## make &>>log
\|& ## make |& tee log
;;?& ## a) echo ;;&
\$EPOCH(SECONDS|REALTIME) ## echo $EPOCHSECONDS
printf [^|;]*%\(.*\)T ## printf '%(%s)T' -1
wait -n ## wait -n
shopt -s .*(globstar|lastpipe|inherit_errexit) ## shopt -s globstar
read [^|;]*-[a-z]*[Ni] ? ## read -N 1 key
sed +(-[a-zA-Z]+ +)*-[a-zA-Z]*r ## sed -r 's/a+/b/'
sed +(-[a-zA-Z]+ +)*-i +[^' "] ## sed -i s/a/b/ file
sed [^|;]*'[^']*\\[+?|] ## sed 's/a\+/b/'
sed [^|;]*'[^']*\\[tbswd] ## sed 's/\s//'
sed [^|;]*s(/[^/]*/[^/]*|,[^,]*,[^,]*)\\n ## sed 's/,/\n/'
grep +(-[a-zA-Z]+ +)*'[^']*\\[+?|] ## grep 'a\|b' file
grep +(-[a-zA-Z]+ +)*-[a-zA-Z]*P ## grep -P '\d' file
date +(-[a-zA-Z]+ +)*(-d|--date) ## date -d yesterday
date [^|;)]*%[0-9]*N ## date +%s%N
readlink +(-[a-zA-Z]+ +)*-[a-zA-Z]*[em] ## readlink -e file
(^|[^A-Za-z_./-])(cp|mv|ln|rm|mkdir|rmdir|chmod|chown|touch|cat|cut|head|tail|sort|sed|tr|wc|tee|find|du|df|tar) ([^|;&#]* )?--[a-z] ## rm --recursive folder
stat +(-[a-zA-Z]+ +)*(-c|--format) ## stat -c %s file
head +-n +- ## head -n -1 file
xargs +(-[a-zA-Z]+ +)*(-d|-r|--) ## xargs -d '\n' rm
find +(-[a-zA-Z]+ +)*-[a-z]+ ## find -name x
find [^|;]*-(printf|regextype|quit|executable) ## find . -printf '%p'
cp +(-[a-zA-Z]+ +)*-[a-zA-Z]*[tuT]( |$) ## cp -t folder file
mv +(-[a-zA-Z]+ +)*-[a-zA-Z]*[tT]( |$) ## mv -T a b
ln +(-[a-zA-Z]+ +)*-[a-zA-Z]*[rT]( |$) ## ln -sr a b
sort +(-[a-zA-Z]+ +)*-[a-zA-Z]*[z] ## sort -z
ls +(-[a-zA-Z]+ +)*--[a-z] ## ls --color
mktemp +[^)|;]*(--|-p) ## mktemp --suffix=.x
base64 +[^|;]*-w ## base64 -w 0
touch +[^|;]*-d  ## touch -d yesterday x
du +[^|;]*-[a-z]*b ## du -b file
install +[^|;]*-[a-zA-Z]*[Dt]( |$) ## install -D a b/c
(^|[^A-Za-z_./-])(nproc|timeout|tac|sha256sum|md5sum|realpath|setsid|gawk|free|pidof|numfmt|shuf)( |$) ## jobs=$(nproc )
echo +-[neE]  ## echo -e "a\tb"
/proc/ ## cat /proc/cpuinfo
END
}

failed=0
checked=0
complain() {
  printf 'FAILED: %s\n' "$1"
  failed=$((failed + 1))
}

# code SCRIPT: its lines with their numbers, without whole-line comments.
code() { grep -n '' "$1" | grep -v '^[0-9]*:[[:space:]]*#'; }

# All of it in one file, "path:number:line", so that a rule is one search.
for script in "${scripts[@]}"; do
  code "$script" | sed "s|^|${script#"$root"/}:|"
done >"$sandbox/code"

while IFS= read -r rule; do
  expression=${rule%% ## *}
  example=${rule##* ## }
  checked=$((checked + 1))
  printf '%s\n' "$example" >"$sandbox/example"
  grep -Eq -- "$expression" "$sandbox/example" || complain "the rule $expression does not catch: $example"
  if found=$(cut -d : -f 3- "$sandbox/code" | grep -nE -- "$expression"); then
    complain "$(sed -n "${found%%:*}p" "$sandbox/code")   ($expression)"
  fi
done < <(rules)

# Under "set -u" an empty list is an unset one to bash 3.2.
if found=$(grep -E '"\$\{[A-Za-z_]+\[@\]\}"' "$sandbox/code"); then
  complain "$found   (an empty list ends a script of bash 3.2)"
fi
# Bash 3.2 ends a command substitution at the first parenthesis that closes, also at that of a pattern.
substituted_case() { # FILE: its lines
  awk '
    { line = $0; sub(/^[[:space:]]*#.*/, "", line) }
    /\$\([^()]*$/ { inside = 1 }
    inside && line ~ /(^|[^A-Za-z_])case .* in/ { print FILENAME ":" FNR ": " line }
    line ~ /\$\((.*[^A-Za-z_])?case .* in .*\)/ && !inside { print FILENAME ":" FNR ": " line }
    inside && line ~ /^[^(]*\)/ { inside = 0 }' "$1"
}
printf 'x=$(\n  case $1 in a) echo b ;; esac\n)\n' >"$sandbox/example"
[ -n "$(substituted_case "$sandbox/example")" ] || complain "no case within a substitution is caught"
printf 'x=$(case $1 in a) echo b ;; esac)\n' >"$sandbox/example"
[ -n "$(substituted_case "$sandbox/example")" ] || complain "no case within a short substitution is caught"
for script in "${scripts[@]}"; do
  found=$(substituted_case "$script")
  [ -z "$found" ] || complain "$found   (bash 3.2 can't read a case within a substitution)"
done

for script in "${scripts[@]}"; do
  # By whatever bash this is: what a later one alone can read is for the rules above.
  bash -n "$script" || complain "${script#"$root"/} is no shell script"
done

# Each program of this folder says it runs with the system's own bash.
for script in "$root"/packaging/macos/*; do
  [ -x "$script" ] && [ -f "$script" ] || continue
  head -n 1 "$script" | grep -Eqx '#!/bin/bash( -p)?' || complain "${script#"$root"/} does not name /bin/bash"
done

echo "$checked rules, ${#scripts[@]} scripts, $failed failed"
[ "$failed" -eq 0 ] && [ "${#scripts[@]}" -ge 8 ]
