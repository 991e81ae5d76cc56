#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Sets up a Debian 12 machine, builds mcfit and shows each of its commands at work. Needs apt and a
# shell, and root or sudo where a package is missing. A second run is incremental.
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

# The columns of two data sets of deliveries, and whatever else is to be the same in both.
deliveries=(--rows "$rows" --decimals 2
  --factors 'region(North, East, South, West, Islands), service(standard, express, freight)'
  --covariates 'distance(20:1000), load(0.1:25)' --missing 'load=0.005')

mcstat_require g++ cmake ninja-build libgtest-dev libgmock-dev libcli11-dev libcsv-dev libfmt-dev \
  libxerces-c-dev

echo "== Building (build/$preset)"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target mcfit
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
echo "== $rows rows made from known coefficients, with factors, covariates, frequencies and no express"
echo "   service to the islands"
time run "$mcfit" generate linear "$scratch/deliveries-linear.csv" "${deliveries[@]}" \
  --dependent hours --freq 'parcels(1:4)' --empty 'region=Islands * service=express' \
  --deviation 0.9 --coefficients '(Intercept)=3.1, region=East=-0.7, region=Islands=7.9,
    region=North=-1.1, region=South=-1.7, service=express=-3, service=freight=6.5,
    region=East * service=express=0.25, region=Islands * service=freight=2,
    region=South * service=freight=-0.5, distance=0.03, distance^2=-0.00001, load=0.5'

echo
echo "== Read as a stream and fitted: the estimates find them again. Their errors are those of"
echo "   independent cases; here the parcels of a row share its hours, so they are too small"
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
echo "== $rows rows of three categories, with known coefficients of the log odds against on time"
time run "$mcfit" generate logistic "$scratch/deliveries-logistic.csv" "${deliveries[@]}" \
  --dependent punctuality --categories 'on time, early, late' \
  --coefficients 'early: (Intercept)=-1.1, region=East=0.5, region=Islands=-1.2, region=North=0.3,
    region=South=0.8, service=express=1.1, service=freight=-0.7, distance=-0.002' \
  --coefficients 'late: (Intercept)=-1.9, region=East=-0.4, region=Islands=0.9, region=North=-0.3,
    region=South=-0.7, service=express=-0.9, service=freight=0.6, distance=0.0015, load=0.03'

echo
echo "== Fitted: the estimates find them again; load counts for late alone"
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
