# R and data.table at the benchmarks' rows. Rscript peers.R FOLDER reads the same commands as peers.py from standard input.

suppressPackageStartupMessages(library(data.table))
setDTthreads(1)  # processor time is compared, and threads only add to it

folder <- commandArgs(trailingOnly = TRUE)[1]
path <- function(name) file.path(folder, name)

inputs <- new.env()
values <- function(name, n = NULL) {
    if (is.null(inputs[[name]])) inputs[[name]] <- readBin(path(paste0(name, ".f64")), "double", n = 2e7)
    if (is.null(n) || n == length(inputs[[name]])) inputs[[name]] else inputs[[name]][seq_len(n)]
}

rows <- list()
# prepare() makes an input, work(input) is timed, check(result) gives the figures.
enter <- function(row, name, prepare, work, check = identity)
    rows[[row]][[name]] <<- list(prepare = prepare, work = work, check = check)

# ---------------------------------------------------------------- one sample

summary_of <- function(order) function(x) {
    n <- length(x)
    places <- c(n %/% 4, (n - 1) %/% 2, n %/% 2, 3 * n %/% 4) + 1
    s <- order(x, places)
    m <- mean(x)
    v <- var(x)
    half <- qt(0.975, n - 1) * sqrt(v / n)
    c(n, sum(x), m, v, exp(mean(log(x))), 1 / mean(1 / x),
      min(x), s[places[1]], (s[places[2]] + s[places[3]]) / 2, s[places[4]], max(x), half)
}
partial_order <- function(x, places) sort(x, partial = unique(places))
whole_order <- function(x, places) sort(x, method = "radix")

one_sample <- function(kind, n) {
    row <- sprintf("one-sample-%s/%d", kind, n)
    enter(row, "r", function() values(kind, n), summary_of(partial_order))
    enter(row, "r-sort", function() values(kind, n), summary_of(whole_order))
}
for (n in 10^(3:7)) one_sample("normal", n)
for (kind in c("uniform", "lognormal", "rounded", "ascending")) for (n in 10^c(3, 5, 7)) one_sample(kind, n)

# ---------------------------------------------------------------- regression

by_sums <- function(xy) {
    n <- length(xy$x)
    mx <- mean(xy$x)
    my <- mean(xy$y)
    dx <- xy$x - mx
    dy <- xy$y - my
    sxx <- sum(dx * dx)
    sxy <- sum(dx * dy)
    b <- sxy / sxx
    se <- sqrt((sum(dy * dy) - b * sxy) / (n - 2) / sxx)
    c(n, my - b * mx, b, se, b / se, 2 * pt(-abs(b / se), n - 2))
}
by_lm_fit <- function(xy) {
    n <- length(xy$x)
    fit <- .lm.fit(cbind(1, xy$x), xy$y)
    b <- fit$coefficients[2]
    se <- sqrt(sum(fit$residuals^2) / (n - 2)) / abs(fit$qr[2, 2])
    c(n, fit$coefficients[1], b, se, b / se, 2 * pt(-abs(b / se), n - 2))
}
regression <- function(n) for (row in sprintf(c("regression/%d", "regression-without-p/%d"), n)) {
    columns <- function() list(x = values("x", n), y = values("y", n))
    enter(row, "r", columns, by_sums)
    enter(row, "r-lm.fit", columns, by_lm_fit)
}
for (n in 10^(3:7)) regression(n)

# ---------------------------------------------------------------- grouping

anova_of <- function(n, sums, squares) {
    N <- sum(n)
    a <- length(n)
    correction <- sum(sums)^2 / N
    among <- sum(sums * sums / n) - correction
    within <- squares - correction - among
    c(a, N, among, within, among / (a - 1) / (within / (N - a)))
}
by_rowsum <- function(gy) {
    sums <- rowsum(cbind(1, gy$y), gy$g, reorder = FALSE)
    anova_of(sums[, 1], sums[, 2], sum(gy$y * gy$y))
}
by_match <- function(gy) {
    place <- match(gy$g, unique(gy$g))
    anova_of(tabulate(place), rowsum(gy$y, place, reorder = FALSE)[, 1], sum(gy$y * gy$y))
}
by_data_table <- function(table) {
    groups <- table[, .(n = .N, s = sum(y)), by = g]
    anova_of(groups$n, groups$s, sum(table$y * table$y))
}
anova <- function(groups) {
    row <- sprintf("anova/%d", groups)
    columns <- function() list(g = values(sprintf("groups-%d", groups)), y = values("grouped"))
    enter(row, "r", columns, by_rowsum)
    enter(row, "r-match", columns, by_match)
    enter(row, "data.table", function() as.data.table(columns()), by_data_table)
}
for (groups in 10^(1:6)) anova(groups)

# ---------------------------------------------------------------- reading and writing

compared <- function(read, written) c(length(read), sum(read != written), sum(abs(read - written) > 4.5e-16 * abs(written)))
reading <- function(row, file, written) {
    enter(row, "data.table", function() path(file), function(p) fread(p, header = FALSE, showProgress = FALSE),
          function(read) compared(read[[1]], values(written)))
}
reading("reading-17-digits/10000000", "numbers-17-digits.txt", "normal")
reading("reading-3-decimals/10000000", "numbers-3-decimals.txt", "decimals")
enter("reading-pairs/5000000", "data.table", function() path("pairs.txt"),
      function(p) fread(p, header = FALSE, sep = ";", showProgress = FALSE),
      function(read) {
          written <- values("decimals", 5e6)
          x <- compared(read[[1]], written)
          y <- compared(read[[2]], written)
          c(x[1], x[2:3] + y[2:3])
      })

# 15 significant digits, here 13 decimals of most values: no bytes to compare. What is read back tells how many rows there are.
enter("exporting/10000000", "data.table", function() data.table(DATA = values("normal")),
      function(table) { fwrite(table, path("export-data.table.txt"), showProgress = FALSE); path("export-data.table.txt") },
      function(written) {
          back <- fread(written, showProgress = FALSE)[[1]]
          stopifnot(all(abs(back - values("normal")) < 1e-12))
          unlink(written)
          c(length(back), NaN, NaN)
      })

# ---------------------------------------------------------------- distributions

distribution <- function(row, width, f) enter(row, "r", function() {
    table <- matrix(values(row), nrow = width)
    lapply(seq_len(width), function(i) table[i, ])
}, function(a) do.call(f, a))
distribution("chi-square-prob", 2, function(x, df) pchisq(x, df))
distribution("F-prob", 3, function(f, df1, df2) pf(f, df1, df2))
distribution("F-point", 3, function(p, df1, df2) qf(p, df1, df2))
distribution("t-prob", 2, function(t, df) pt(t, df, lower.tail = FALSE))
distribution("t-point", 2, function(alpha, df) qt(alpha / 2, df, lower.tail = FALSE))
distribution("chi-square-point", 2, function(p, df) qchisq(p, df))
distribution("normal-point", 1, function(p) qnorm(p))

# ---------------------------------------------------------------- random numbers

# runif is made of 32 bits of the same generator, seeded otherwise.
enter("random-real", "r", function() 1000000, runif, function(drawn) c(rep(NaN, 5), mean(drawn), min(drawn), max(drawn)))

# ---------------------------------------------------------------- commands

processor_seconds <- function() sum(proc.time()[1:2])

# The clock counts in milliseconds, so calls are repeated until it has counted enough of them.
seconds_per_call <- function(contender, least) {
    input <- contender$prepare()
    calls <- 1
    repeat {
        begin <- processor_seconds()
        for (i in seq_len(calls)) contender$work(input)
        spent <- processor_seconds() - begin
        if (spent >= least) return(spent / calls)
        calls <- if (spent < 0.02) calls * 8 else ceiling(calls * 1.2 * least / spent)
    }
}

answer <- function(text) { cat(text, "\n", sep = ""); flush(stdout()) }
figures <- function(x) paste(format(x, digits = 17, trim = TRUE), collapse = " ")

commands <- file("stdin", "r")
while (length(command <- readLines(commands, 1)) > 0) {
    words <- strsplit(command, " ")[[1]]
    contender <- if (length(words) > 2) rows[[words[2]]][[words[3]]]
    switch(words[1],
        list = answer(paste(names(rows), sapply(rows, function(row) paste(names(row), collapse = " ")), collapse = ";")),
        forget = { rm(list = ls(inputs), envir = inputs); invisible(gc()); answer("forgotten") },
        answers = answer(figures(as.numeric(contender$check(contender$work(contender$prepare()))))),
        time = answer(format(seconds_per_call(contender, as.numeric(words[4])), digits = 17)))
}
