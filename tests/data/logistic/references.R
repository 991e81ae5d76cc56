# SPDX-License-Identifier: Apache-2.0
#
# Writes the data sets of this folder and the values that a multinomial logistic regression of each
# must come to, by R alone. To be run in this folder:
#
#     Rscript references.R && python3 refine.py
#
# Packages: those of an R installation with its recommended ones (Debian: r-base-core, r-recommended).
#
# nnet::multinom stops far from the maximum for a comparison to 1e-8, and R chooses another set of
# columns than the library. So the design is made here as the library orders it: the intercept, then
# for each effect one indicator column for each combination of levels that a used row has (all of
# them, no contrasts), combinations in lexicographic order, times the covariates; a column that
# depends on those before it is redundant and keeps the estimate 0. Equations stand in ascending
# order of the categories without the reference. Newton steps then go on until they no longer gain.
# glm or multinom must agree on the log-likelihood, which doesn't depend on the set of columns.

suppressPackageStartupMessages({library(MASS); library(nnet); library(survival)})
options(digits = 17, warn = 1)

number <- function(x) formatC(x, digits = 17, width = -1, format = "g")

codes <- function(f) as.integer(droplevels(f)) - 1L

# What a model is made of: a frame whose factors (the dependent too) are R factors, the dependent's
# name, reference ("first", "last" or a label), effects as "a*b*b", and the frequency's name.
model <- function(name, source, data, dependent, effects, frequency = NULL, reference = "last",
                  intercept = TRUE) {
  used <- unique(unlist(strsplit(effects, "*", fixed = TRUE)))
  isFactor <- vapply(used, function(v) is.factor(data[[v]]), TRUE)
  list(name = name, source = source, data = droplevels(data), dependent = dependent,
       effects = effects, frequency = frequency, reference = reference, intercept = intercept,
       factors = used[isFactor], covariates = used[!isFactor])
}

head_lines <- function(m) {
  levelsOf <- function(v) paste0("# Levels: ", v, " = ", paste(levels(m$data[[v]]), collapse = ", "))
  c(paste0("# ", m$source, ", ", R.version.string, ": Rscript references.R"),
    vapply(c(m$dependent, m$factors), levelsOf, ""), paste0("# Reference: ", m$reference),
    paste0("# Intercept: ", if (m$intercept) "yes" else "no"),
    paste0("# Effects: ", paste(m$effects, collapse = "; ")))
}

write_data <- function(m) {
  size <- function(v) paste0(v, ":factor:", nlevels(m$data[[v]]))
  columns <- c(m$dependent, m$factors, m$covariates, m$frequency)
  header <- c(paste0(m$dependent, ":dependent:", nlevels(m$data[[m$dependent]])),
              vapply(m$factors, size, ""),
              if (length(m$covariates)) paste0(m$covariates, ":covariate"),
              if (length(m$frequency)) paste0(m$frequency, ":frequency"))
  cells <- lapply(columns, function(v) {
    x <- m$data[[v]]
    if (is.factor(x)) as.character(codes(x)) else number(x)
  })
  writeLines(c(head_lines(m), paste(header, collapse = ","), do.call(paste, c(cells, sep = ","))),
             paste0(m$name, ".csv"))
}

design_of <- function(m, rows) {
  columns <- if (m$intercept) list(rep(1, nrow(rows))) else list()
  for (effect in strsplit(m$effects, "*", fixed = TRUE)) {
    product <- rep(1, nrow(rows))
    for (x in effect[!(effect %in% m$factors)]) product <- product * rows[[x]]
    factors <- m$factors[m$factors %in% effect]
    if (length(factors) == 0) {
      columns <- c(columns, list(product))
    } else {
      cell <- do.call(paste, lapply(factors, function(f) sprintf("%04d", codes(rows[[f]]))))
      for (one in sort(unique(cell))) columns <- c(columns, list(product * (cell == one)))
    }
  }
  do.call(cbind, columns)
}

# The columns that don't depend on those before them.
independent <- function(x, w) {
  kept <- integer(0)
  for (j in seq_len(ncol(x))) {
    column <- sqrt(w) * x[, j]
    rest <- column
    if (length(kept)) rest <- qr.resid(qr(sqrt(w) * x[, kept, drop = FALSE], tol = 1e-12), column)
    if (sqrt(sum(rest^2)) > 1e-6 * sqrt(sum(column^2))) kept <- c(kept, j)
  }
  kept
}

fit <- function(m) {
  w <- if (length(m$frequency)) m$data[[m$frequency]] else rep(1, nrow(m$data))
  rows <- droplevels(m$data[w > 0, ])
  w <- w[w > 0]
  x <- design_of(m, rows)
  kept <- independent(x, w)
  y <- codes(m$data[[m$dependent]])[match(rownames(rows), rownames(m$data))]
  categories <- sort(unique(y))
  labels <- levels(m$data[[m$dependent]])
  reference <- switch(m$reference, first = categories[1], last = categories[length(categories)],
                      match(m$reference, labels) - 1L)
  categories <- c(setdiff(categories, reference), reference)
  nEquations <- length(categories) - 1
  z <- outer(y, categories, "==") * 1
  xk <- x[, kept, drop = FALSE]
  p <- length(kept)
  probabilities <- function(b) {
    eta <- cbind(xk %*% matrix(b, p), 0)
    e <- exp(eta - apply(eta, 1, max))
    e / rowSums(e)
  }
  likelihood <- function(b) {
    eta <- cbind(xk %*% matrix(b, p), 0)
    top <- apply(eta, 1, max)
    sum(w * (rowSums(z * eta) - top - log(rowSums(exp(eta - top)))))
  }
  information <- function(q) {
    h <- matrix(0, nEquations * p, nEquations * p)
    for (s in seq_len(nEquations)) for (t in seq_len(nEquations)) {
      v <- w * (q[, s] * (s == t) - q[, s] * q[, t])
      h[(s - 1) * p + 1:p, (t - 1) * p + 1:p] <- crossprod(xk, v * xk)
    }
    h
  }
  counts <- colSums(w * z)
  b <- rep(0, nEquations * p)
  if (m$intercept) b[(seq_len(nEquations) - 1) * p + 1] <- log(counts[seq_len(nEquations)] / counts[nEquations + 1])
  initial <- likelihood(b)
  current <- initial
  for (iteration in 1:60) {
    q <- probabilities(b)
    score <- as.vector(crossprod(xk, w * (z - q)[, seq_len(nEquations), drop = FALSE]))
    # The equations scaled to a diagonal of 1: the units of the covariates don't matter then.
    h <- information(q)
    d <- 1 / sqrt(diag(h))
    step <- d * solve(h * outer(d, d), d * score)
    while (likelihood(b + step) < current - 1e-9 * abs(current)) step <- step / 2
    b <- b + step
    current <- likelihood(b)
    if (max(abs(step) / (abs(b) + 1e-6)) < 1e-15) break
  }
  h <- information(probabilities(b))
  d <- 1 / sqrt(diag(h))
  list(rows = rows, w = w, y = y, labels = labels, kept = kept, nBasic = ncol(x), b = b,
       covariance = outer(d, d) * solve(h * outer(d, d)), initial = initial, final = current,
       categories = categories, probabilities = probabilities(b))
}

# The log-likelihood of R's own fit of the same model.
established <- function(m, f) {
  rows <- f$rows
  rows$.w <- f$w
  for (v in m$factors) contrasts(rows[[v]]) <- contr.treatment(nlevels(rows[[v]]))
  term <- function(e) {
    v <- table(strsplit(e, "*", fixed = TRUE)[[1]])
    paste(ifelse(v > 1, paste0("I(", names(v), "^", v, ")"), names(v)), collapse = ":")
  }
  form <- paste(vapply(m$effects, term, ""), collapse = "+")
  formula <- as.formula(paste(".y ~", if (m$intercept) "" else "0 +", form))
  if (length(f$categories) == 2) {
    rows$.y <- (f$y == f$categories[1]) * 1
    return(as.numeric(logLik(glm(formula, binomial, rows, weights = .w, epsilon = 1e-14, maxit = 100))))
  }
  rows$.y <- factor(f$y)
  -multinom(formula, rows, weights = .w, trace = FALSE, maxit = 5000, abstol = 1e-12, reltol = 1e-14,
            MaxNWts = 10000)$value
}

write_expected <- function(m) {
  f <- fit(m)
  other <- established(m, f)
  stopifnot(abs(other - f$final) < 1e-7 * abs(f$final))
  p <- length(f$kept)
  nAll <- f$nBasic * (length(f$categories) - 1)
  place <- as.vector(outer(f$kept - 1, (seq_len(length(f$categories) - 1) - 1) * f$nBasic, "+"))
  weight <- sum(f$w)
  coxSnell <- 1 - exp(2 * (f$initial - f$final) / weight)
  value <- function(quantity, i, j, x) paste(quantity, i, j, number(x), sep = ",")
  lines <- c(head_lines(m), "quantity,i,j,value",
             value("parameters", "", "", nAll),
             value("total_weight", "", "", weight),
             value("degrees_of_freedom", "", "", weight - nAll),
             value("initial_ll", "", "", f$initial), value("final_ll", "", "", f$final),
             value("cox_snell", "", "", coxSnell),
             value("nagelkerke", "", "", coxSnell / (1 - exp(2 * f$initial / weight))),
             value("mcfadden", "", "", 1 - f$final / f$initial),
             value("estimate", place, "", f$b))
  lower <- which(lower.tri(f$covariance, diag = TRUE), arr.ind = TRUE)
  lines <- c(lines, value("covariance", place[lower[, 1]], place[lower[, 2]], f$covariance[lower]))
  shown <- unique(round(seq(1, nrow(f$rows), length.out = 5)))
  original <- match(rownames(f$rows)[shown], rownames(m$data)) - 1
  for (c in seq_along(f$categories)) {
    lines <- c(lines, value("probability", original, f$categories[c], f$probabilities[shown, c]))
  }
  writeLines(lines, paste0(m$name, "_expected.csv"))
  cat(sprintf("%-12s %4d rows %3d of %3d parameters, log-likelihood %.10f, other fit off by %.1e\n",
              m$name, nrow(m$data), length(f$b), nAll, f$final, other - f$final))
}

package <- function(name, set) {
  paste0("Data set ", set, " of package ", name, " ", as.character(packageVersion(name)))
}

hair <- as.data.frame(HairEyeColor)
admissions <- as.data.frame(UCBAdmissions)
titanic <- as.data.frame(Titanic)
births <- transform(birthwt, low = factor(low, labels = c("no", "yes")), race = factor(race),
                    smoke = factor(smoke), ht = factor(ht), ui = factor(ui))

cancer <- rbind(data.frame(esoph[1:3], status = "case", n = esoph$ncases),
                data.frame(esoph[1:3], status = "control", n = esoph$ncontrols))
cancer$status <- factor(cancer$status)
first <- rbind(data.frame(Age = menarche$Age, had = "no", n = menarche$Total - menarche$Menarche),
               data.frame(Age = menarche$Age, had = "yes", n = menarche$Menarche))
first$had <- factor(first$had)
trial <- transform(veteran, trt = factor(trt), prior = factor(prior))
school <- transform(minn38, phs = factor(phs))
infertile <- transform(infert, case = factor(case))
spine <- rpart::kyphosis

models <- list(
  model("housing", package("MASS", "housing"), housing, "Sat",
        c("Infl", "Type", "Cont", "Infl*Type"), "Freq", "first"),
  model("haireye", package("datasets", "HairEyeColor"), hair, "Eye", c("Hair", "Sex", "Hair*Sex"),
        "Freq", "Hazel"),
  model("admissions", package("datasets", "UCBAdmissions"), admissions, "Admit",
        c("Dept", "Gender", "Dept*Gender"), "Freq"),
  model("births", package("MASS", "birthwt"), births, "low",
        c("age", "lwt", "race", "smoke", "ptl", "ht", "ui", "smoke*age"), reference = "first"),
  model("births_cells", package("MASS", "birthwt"), births, "low", c("race*smoke", "race*lwt"),
        intercept = FALSE),
  model("quine", package("MASS", "quine"), quine, "Eth", c("Sex", "Age", "Lrn", "Age*Lrn", "Days")),
  model("veteran", package("survival", "veteran"), trial, "celltype",
        c("trt", "karno", "age", "prior", "trt*age"), reference = "smallcell"),
  model("glass", package("MASS", "fgl"), fgl, "type", c("RI", "Na", "Si"), reference = "WinNF"),
  model("kyphosis", package("rpart", "kyphosis"), spine, "Kyphosis",
        c("Age", "Age*Age", "Number", "Start")),
  model("school", package("MASS", "minn38"), school, "phs", c("hs", "fol", "sex", "hs*sex"), "f"),
  model("infertility", package("datasets", "infert"), infertile, "case",
        c("education", "age", "parity", "induced", "spontaneous", "induced*spontaneous"),
        reference = "first"),
  model("cancer", package("datasets", "esoph"), cancer, "status",
        c("agegp", "alcgp", "tobgp", "alcgp*tobgp"), "n"),
  model("menarche", package("MASS", "menarche"), first, "had", c("Age", "Age*Age"), "n", "first"),
  model("feed", package("datasets", "chickwts"), chickwts, "feed", c("weight", "weight*weight")))

# Data without a maximum: no fit is written for these.
separated <- list(
  model("iris_two", package("datasets", "iris"), subset(iris, Species != "virginica"), "Species",
        c("Petal.Length", "Petal.Width")),
  model("iris", package("datasets", "iris"), iris, "Species",
        c("Sepal.Length", "Sepal.Width", "Petal.Length", "Petal.Width")),
  model("titanic", package("datasets", "Titanic"), titanic, "Survived",
        c("Class", "Sex", "Age", "Class*Age"), "Freq"))

for (m in models) {
  write_data(m)
  write_expected(m)
}
for (m in separated) write_data(m)
