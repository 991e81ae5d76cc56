#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Sets up a Debian 12 machine, builds mcfit, describes one data set and fits eight with it. Needs apt
# and a shell, and root or sudo where a package is missing. A second run is incremental.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/setup-debian.sh

preset=release
mcfit=build/$preset/examples/mcfit/mcfit
scratch=build/$preset/demo
rows=1000000

# Shows a command, then runs it.
run() {
  local word
  printf '\n$'
  for word in "$@"; do
    case $word in
      *[!A-Za-z0-9_./,=-]*) printf " '%s'" "$word" ;;
      *) printf ' %s' "$word" ;;
    esac
  done
  printf '\n\n'
  "$@"
}

# Makes a large data set of a kind; written under another name first, so that an interrupted run
# leaves nothing that a later one takes for the whole.
make_rows() {
  local file=$scratch/deliveries-$1.csv
  if [ ! -f "$file" ]; then
    echo "== Making $file: $rows rows"
    "build/$preset/examples/makerows" "$1" "$rows" >"$file.part"
    mv "$file.part" "$file"
  fi
}

mcstat_require g++ cmake ninja-build libgtest-dev libgmock-dev libcli11-dev libcsv-dev libfmt-dev \
  libxerces-c-dev

echo "== Building (build/$preset)"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target mcfit makerows
mkdir -p "$scratch"

echo
echo "== Certified data: Longley's. The certified coefficient of year is 1829.15146461355."
run "$mcfit" linear examples/data/longley.csv --dependent employed \
  --covariates deflator,gnp,unemployed,forces,population,year --digits 10

echo
echo "== Two factors with interaction and empty cells, and the same rows scored"
run "$mcfit" linear examples/data/yields.csv --dependent yield --factors variety,water \
  --effects 'variety, water, variety*water' \
  --predict examples/data/yields.csv --out "$scratch/yields-scored.csv"
run head -n 4 "$scratch/yields-scored.csv"

echo
echo "== Regression weights: Galton's sweet peas"
run "$mcfit" linear examples/data/peas.csv --dependent progeny --covariates parent --weight weight

echo
make_rows linear
echo "== $rows rows with factors, covariates and frequencies, read as a stream"
time run "$mcfit" linear "$scratch/deliveries-linear.csv" --dependent hours --factors region,service \
  --covariates distance,load --freq parcels \
  --effects 'region, service, region*service, distance, distance^2, load'

echo
echo "== Three logits of a table of counts: hair by eye colour and sex, each row standing for"
echo "   several people; each colour of hair against brown"
run "$mcfit" logistic examples/data/haireyecolor.csv --dependent hair --reference Brown \
  --factors eye,sex --freq people

echo
echo "== Two categories, factors and covariates: low against normal birth weight, and the same rows"
echo "   scored: predicted category and the probability of each"
run "$mcfit" logistic examples/data/birthwt.csv --dependent birthweight \
  --factors race,smoke,hypertension,irritability --covariates age,lwt \
  --predict examples/data/birthwt.csv --out "$scratch/birthwt-scored.csv"
run head -n 4 "$scratch/birthwt-scored.csv"

echo
echo "== Separated data: petals tell one species of iris from the others without error. No maximum"
echo "   exists, and the warning says so"
run "$mcfit" logistic examples/data/iris.csv --dependent species \
  --covariates petal_length,petal_width

echo
make_rows logistic
echo "== $rows rows with three categories, drawn with log odds in which distance counts -0.002 for"
echo "   early and 0.0015 for late, load 0 and 0.03: the estimates find them again"
time run "$mcfit" logistic "$scratch/deliveries-logistic.csv" --dependent punctuality \
  --reference 'on time' --factors region,service --covariates distance,load

echo
echo "== What a file holds, as a table, as PMML and as a list of variables that is read back"
run "$mcfit" describe examples/data/birthwt.csv --bins age=4 --pmml "$scratch/birthwt.xml" \
  --save "$scratch/birthwt-list.xml"
run sed -n '/<ModelStats>/,/<\/UnivariateStats>/p' "$scratch/birthwt.xml"
run "$mcfit" describe --load "$scratch/birthwt-list.xml"

echo
echo "== A model as PMML, for other programs to score with"
run "$mcfit" linear examples/data/yields.csv --dependent yield --factors variety,water \
  --pmml "$scratch/yields.xml"
run sed -n '/<ParamMatrix>/,/<\/ParamMatrix>/p' "$scratch/yields.xml"

echo
echo "== The same logistic regression as a settings document asks for it: variables, categories and"
echo "   options are the document's"
run "$mcfit" build examples/data/birthwt-settings.xml examples/data/birthwt.csv \
  --pmml "$scratch/birthwt-model.xml"

echo
echo "== What PMML files tell of the data: that of the description above, and that of this model"
run "$mcfit" dictionary "$scratch/birthwt.xml"
run "$mcfit" dictionary "$scratch/birthwt-model.xml"

echo
echo "== One model for each of two groups, and both in one PMML document; the same again by hand"
run "$mcfit" split examples/data/birthwt.csv --by smoke --kind logistic --dependent birthweight \
  --factors race --covariates age,lwt --out-dir "$scratch/births"
run "$mcfit" merge "$scratch/births.xml" --split smoke=no "$scratch/births/smoke=no.xml" \
  --split smoke=yes "$scratch/births/smoke=yes.xml"
run grep -o '<SimplePredicate[^>]*>' "$scratch/births.xml"

echo
echo "== All done. Try: $mcfit describe --help, $mcfit linear --help, $mcfit logistic --help"
