# SPDX-License-Identifier: Apache-2.0
# Rscript peers.R TABLES RESULTS: R's own functions at the points of the tables, one file for each
# function in the folder RESULTS, a line for each point, in hexadecimal.
arguments <- commandArgs(trailingOnly = TRUE)
tables <- arguments[1]
results <- arguments[2]

functions <- list(
  prbnrm = list("prbnrm", function(x) pnorm(x)),
  probit = list("probit", function(p) qnorm(p)),
  dnlgam = list("dnlgam", function(x) lgamma(x)),
  dnlbnc = list("dnlbnc", function(n, k) lchoose(n, k)),
  "gammad lower" = list("gammad", function(x, a) pgamma(x, a)),
  "gammad upper" = list("gammad", function(x, a) pgamma(x, a, lower.tail = FALSE)),
  cdfbet = list("cdfbet", function(x, a, b) pbeta(x, a, b)),
  CdfT = list("cdft", function(t, df) pt(t, df)),
  "CdfT of -t" = list("cdft", function(t, df) pt(-t, df)),
  CdfF = list("cdff", function(f, d1, d2) pf(f, d1, d2)),
  SigF = list("cdff", function(f, d1, d2) pf(f, d1, d2, lower.tail = FALSE)),
  CdfBin = list("cdfbin", function(k, n, p) pbinom(k, n, p)),
  PdfBin = list("pdfbin", function(k, n, p) dbinom(k, n, p)),
  CDFHyper = list("cdfhyper", function(x, N, K, n) phyper(x, K, N - K, n)),
  IdfChi = list("idfchi", function(p, df) qchisq(p, df)),
  IdfBeta = list("idfbeta", function(p, a, b) qbeta(p, a, b)),
  IdfT = list("idft", function(p, df) qt(p, df)),
  IdfF = list("idff", function(p, d1, d2) qf(p, d1, d2))
)

dir.create(results, showWarnings = FALSE, recursive = TRUE)
for (name in names(functions)) {
  f <- functions[[name]][[2]]
  lines <- readLines(file.path(tables, paste0(functions[[name]][[1]], ".csv")))
  cells <- strsplit(grep("^#", lines, invert = TRUE, value = TRUE), ",")
  values <- suppressWarnings(lapply(seq_along(formals(f)), function(i) {
    as.numeric(vapply(cells, `[`, "", i + 1))
  }))
  writeLines(sprintf("%a", suppressWarnings(do.call(f, values))), file.path(results, name))
}
