#!/usr/bin/env Rscript
# What R says of every data set at hand: t.test, aov, lm, predict, cor.test, chisq.test, var.test and ks.test.
# Usage: Rscript textbook_all_data.R FOLDER...   folders that have values/, pairs/, groups/, series/ and classes/ in them
#
# arguments: those of wqstat; path: of the figure in the object "textbook", or of one that only wq_exact has (exact/...).

here <- dirname(sub("^--file=", "", grep("^--file=", commandArgs(), value = TRUE)))
source(file.path(here, "textbook_figures.R"))

cat("arguments,path,value\n")
row <- function(arguments, figures) cat(sprintf("%s,%s,%.17g\n", arguments, names(figures), figures), sep = "")
each <- function(kind, work) for (folder in commandArgs(TRUE)) for (file in list.files(file.path(folder, kind), full.names = TRUE)) work(file)

# ---------------------------------------------------------------- samples

last_file <- NULL
each("values", function(file) {
  values <- one_column(file)
  for (mu in c(0, values[2])) row(sprintf("describe --mu %.17g %s", mu, file), describe_figures(values, mu))
  if (!is.null(last_file)) row(paste("variances", last_file, file), variances_figures(one_column(last_file), values))
  last_file <<- file
})

# ---------------------------------------------------------------- pairs

at <- function(x) c(min(x), median(x), max(x) * 1.25)

regress_all <- function(file, model, logarithm_of_x, logarithm_of_y) {
  pairs <- two_columns(file)
  if (logarithm_of_x) pairs <- subset(pairs, x > 0)
  if (logarithm_of_y) pairs <- subset(pairs, y > 0)
  if (nrow(pairs) < 3) return(invisible())
  u <- if (logarithm_of_x) log(pairs$x) else pairs$x
  v <- if (logarithm_of_y) log(pairs$y) else pairs$y
  back <- if (logarithm_of_y) exp else identity
  arguments <- paste("regress --model", model, file)
  row(arguments, regress_figures(u, v))
  line <- lm(v ~ u)
  for (x in at(pairs$x))
    for (kind in c("confidence", "prediction")) {
      limits <- predict(line, data.frame(u = if (logarithm_of_x) log(x) else x), interval = kind)
      row(arguments, split_limits(sprintf("exact/%s/%.17g", kind, x), back(limits[2:3])))
    }
}

each("pairs", function(file) {
  pairs <- two_columns(file)
  row(paste("correlate", file), correlate_figures(pairs$x, pairs$y))
  row(paste("pairs", file), pairs_figures(pairs$x, pairs$y))
  regress_all(file, "linear", FALSE, FALSE)
  regress_all(file, "logarithmic", TRUE, FALSE)
  regress_all(file, "exponential", FALSE, TRUE)
  regress_all(file, "power", TRUE, TRUE)
})

# ---------------------------------------------------------------- groups

each("groups", function(file) {
  data <- two_columns(file)
  row(paste("anova", file), anova_figures(data$x, data$y))
  origin <- data$y[1]
  table <- aov(y ~ x, data.frame(x = factor(data$x), y = data$y - origin))
  for (id in head(unique(data$x), 5)) {
    limits <- predict(table, data.frame(x = factor(id, levels = levels(factor(data$x)))), interval = "confidence") + origin
    row(paste("anova", file), split_limits(sprintf("exact/group/%.17g", id), limits[2:3]))
  }
})

each("series", function(file) {
  data <- repeated(file)
  row(paste("multiy", file), multiy_figures(data$x, data$y))
  means <- aggregate(y ~ x, data, mean)
  line <- lm(y ~ x, means, weights = as.vector(table(data$x)))
  for (x in at(data$x))  # predicted is the mean of a further group of 3
    for (kind in c("confidence", "prediction")) {
      limits <- predict(line, data.frame(x = x), interval = kind, weights = 3)
      row(paste("multiy", file), split_limits(sprintf("exact/%s/%.17g", kind, x), limits[2:3]))
    }
})

# ---------------------------------------------------------------- classes

each("classes", function(file) {
  data <- two_columns(file)
  if (all(data$y > 0)) {
    row(paste("fit --no-williams", file), fit_figures(data$x, data$y, 1))
    row(paste("fit", file), fit_figures(data$x, data$y, williams(data$x)))
  }
  if (all(data == round(data))) row(paste("ks", file), ks_figures(data$x, data$y))
})
