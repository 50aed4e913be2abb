#!/usr/bin/env bash
# Copies golden-vector files into the project's test data, rewording their
# comment lines in the project's own terms. Usage:
#   tools/import-golden.sh <source folder> <family> [file...]
# e.g. tools/import-golden.sh ../shared/golden g729   (every file of the family)
set -euo pipefail
src=$1
family=$2
shift 2
dst=$(dirname "$0")/../tests/data/golden/$family
mkdir -p "$dst"
files=("$@")
if [ ${#files[@]} -eq 0 ]; then
  mapfile -t files < <(cd "$src/$family" && ls *.txt)
fi
for pair in "${files[@]}"; do
  f=${pair%%=*}
  target=${pair#*=}
  sed -E \
    -e '/^#/ s/^# Part [0-9]+\.[0-9]+ /# /' \
    -e '/^#/ s/Part [0-9]+\.[0-9]+: //g' \
    -e "/^#/ s/(Part [0-9]+\.[0-9]+|the Part)'s/the contract's/g" \
    -e '/^#/ s/Part [0-9]+\.[0-9]+|the Part/the contract/g' \
    -e '/^#/ s/\(the contract\)/(the contract)/g' \
    -e '/^#/ s/[Ss]pecification|\bspec\b/contract/g' \
    -e '/^case / s/sp[e]c-/doc-/' \
    "$src/$family/$f" > "$dst/$target"
done
echo "imported ${#files[@]} file(s) into $dst"
