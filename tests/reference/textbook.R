#!/usr/bin/env Rscript
# Makes textbook.csv: what R says about the shipped data sets, for the figures of wqstat --textbook.
# Usage: Rscript textbook.R > textbook.csv
#
# arguments: those of wqstat, the names of the files without their folder; path: of the figure in the object "textbook".

here <- dirname(sub("^--file=", "", grep("^--file=", commandArgs(), value = TRUE)))
shipped <- function(name) file.path(here, "..", "..", "examples", "data", name)
one <- function(name) scan(shipped(name), comment.char = "#", quiet = TRUE)
two <- function(name) setNames(read.table(shipped(name), sep = ";", comment.char = "#"), c("x", "y"))

cat("# Made by textbook.R\narguments,path,value\n")
row <- function(arguments, ...) {
  figures <- c(...)
  cat(sprintf("%s,%s,%.15g\n", arguments, names(figures), figures), sep = "")
}

variance_limits <- function(values, alpha) {
  df <- length(values) - 1
  df * var(values) / qchisq(c(1 - alpha / 2, alpha / 2), df)
}

describe <- function(options, values, mu = 0, alpha = 0.05) {
  test <- t.test(values, mu = mu, conf.level = 1 - alpha)
  df <- length(values) - 1
  row(paste0("describe ", options),
    p = test$p.value, criticalT = qt(1 - alpha / 2, df), criticalTHalfAlpha = qt(1 - alpha / 4, df),
    "confidenceLimits/lower" = test$conf.int[1], "confidenceLimits/upper" = test$conf.int[2],
    "varianceLimits/lower" = variance_limits(values, alpha)[1], "varianceLimits/upper" = variance_limits(values, alpha)[2],
    cohensD = (mean(values) - mu) / sd(values))
}
cavendish <- one("cavendish.txt")
describe("--mu 5.517 cavendish.txt", cavendish, 5.517)
describe("--alpha 0.01 --mu 5.4 cavendish.txt", cavendish, 5.4, 0.01)
describe("--alpha 0.2 --head 0.25 --tail 0.25 --mu 5.5 cavendish.txt", sort(cavendish)[9:22], 5.5, 0.2)  # 8 and 7 left out

regress <- function(arguments, x, y, alpha = 0.05) {
  line <- lm(y ~ x)
  b <- confint(line, level = 1 - alpha)[2, ]
  at_mean <- predict(line, data.frame(x = mean(x)), interval = "confidence", level = 1 - alpha)
  row(arguments,
    pB = summary(line)$coefficients[2, 4], criticalT = qt(1 - alpha / 2, length(x) - 2),
    "limitsB/lower" = b[[1]], "limitsB/upper" = b[[2]], "limitsY/lower" = at_mean[2], "limitsY/upper" = at_mean[3],
    rSquared = summary(line)$r.squared, adjustedRSquared = summary(line)$adj.r.squared)
}
norris <- two("nist_norris.txt")
regress("regress --model linear nist_norris.txt", norris$x, norris$y)
positive <- subset(norris, y > 0)
regress("regress --alpha 0.001 --model power nist_norris.txt", log(positive$x), log(positive$y), 0.001)
regress("regress --model logarithmic nist_norris.txt", log(norris$x), norris$y)

correlate <- function(arguments, x, y, alpha = 0.05) {
  test <- cor.test(x, y, conf.level = 1 - alpha)
  r <- abs(test$estimate)
  df <- length(x) - 2
  upper <- pf((1 + r) / (1 - r), df, df, lower.tail = FALSE)
  row(arguments,
    rSquared = r[[1]]^2, pT = test$p.value, criticalT = qt(1 - alpha / 2, df), FSignificance = upper[[1]], pF = 2 * upper[[1]],
    criticalF = qf(1 - alpha / 2, df, df), "confidenceLimitsR/lower" = test$conf.int[1], "confidenceLimitsR/upper" = test$conf.int[2],
    "confidenceLimits/lower" = atanh(test$conf.int[1]), "confidenceLimits/upper" = atanh(test$conf.int[2]))
}
supplements <- two("toothgrowth_supp.txt")
correlate("correlate --alpha 0.01 toothgrowth_supp.txt", supplements$x, supplements$y, 0.01)

anova_of <- function(arguments, x, y, alpha = 0.05) {
  table <- anova(lm(y ~ factor(x)))
  ss <- table$"Sum Sq"
  ms <- table$"Mean Sq"
  row(arguments,
    msAmong = ms[1], msWithin = ms[2], etaSquared = ss[1] / sum(ss), omegaSquared = (ss[1] - table$Df[1] * ms[2]) / (sum(ss) + ms[2]),
    fs = table$F[1], p = table$P[1], lowerTail = pf(table$F[1], table$Df[1], table$Df[2]),
    criticalF = qf(1 - alpha, table$Df[1], table$Df[2]))
}
resistivity <- two("nist_sirstv.txt")
anova_of("anova nist_sirstv.txt", resistivity$x, resistivity$y)
anova_of("anova toothgrowth_supp.txt", supplements$x, supplements$y)
anova_of("anova --alpha 0.1 toothgrowth_supp.txt", supplements$x, supplements$y, 0.1)

seedlings <- read.table(shipped("seedlings.txt"), sep = ":", comment.char = "#", fill = TRUE)
for (i in which(is.na(seedlings$V3))) seedlings$V3[i] <- seedlings$V3[i - 1]  # a count left out is the one before
x <- rep(seedlings$V1, seedlings$V3)
y <- rep(seedlings$V2, seedlings$V3)
groups <- anova(lm(y ~ factor(x)))
deviations <- anova(lm(y ~ x), lm(y ~ factor(x)))
df <- deviations$Df[2]
ms <- deviations$"Sum of Sq"[2] / df
b <- coef(lm(y ~ x))[[2]]
se <- sqrt(ms / sum((x - mean(x))^2))
row("multiy seedlings.txt",
  "among/fs" = groups$F[1], "among/p" = groups$P[1], "among/lowerTail" = pf(groups$F[1], groups$Df[1], groups$Df[2]),
  "among/criticalF" = qf(0.95, groups$Df[1], groups$Df[2]), "deviations/df" = df, "deviations/ms" = ms,
  "deviations/fs" = deviations$F[2], "deviations/p" = deviations$P[2], "deviations/criticalF" = qf(0.95, df, groups$Df[2]),
  "deviations/lowerTail" = pf(deviations$F[2], df, groups$Df[2]), "regression/fs" = (b / se)^2, rSquared = summary(lm(y ~ x))$r.squared, b = b, seB = se, tB = b / se,
  pT = 2 * pt(-abs(b / se), df), criticalT = qt(0.975, df), "limitsB/lower" = b - qt(0.975, df) * se,
  "limitsB/upper" = b + qt(0.975, df) * se)

fit <- function(arguments, q, yates = 0) {
  peas <- two("mendel_peas.txt")
  x2 <- sum((abs(peas$x - peas$y) - yates)^2 / peas$y)
  g <- 2 * sum(peas$x * log(peas$x / peas$y))
  df <- nrow(peas) - 1
  figures <- c("X2/lowerTail" = pchisq(x2, df), "X2/p" = pchisq(x2, df, lower.tail = FALSE),
    "G/lowerTail" = pchisq(g, df), "G/p" = pchisq(g, df, lower.tail = FALSE), criticalChiSquare = qchisq(0.95, df),
    cohensW = sqrt(sum((peas$x / sum(peas$x) - peas$y / sum(peas$y))^2 / (peas$y / sum(peas$y)))))
  if (q != 1)
    figures <- c(figures, "GAdjusted/lowerTail" = pchisq(g / q, df), "GAdjusted/p" = pchisq(g / q, df, lower.tail = FALSE))
  row(arguments, figures)
}
fit("fit mendel_peas.txt", 1 + 5 / (6 * 556))
fit("fit --no-williams mendel_peas.txt", 1)

digits <- two("pi_e_digits.txt")
test <- suppressWarnings(ks.test(rep(0:9, digits$x), rep(0:9, digits$y), exact = FALSE))
kolmogorov <- function(lambda) { k <- 1:100; 2 * sum((-1)^(k - 1) * exp(-2 * k^2 * lambda^2)) }
root <- sqrt(sum(digits$x) * sum(digits$y) / (sum(digits$x) + sum(digits$y)))
row("ks pi_e_digits.txt",
  pLargeSamples = test$p.value,
  criticalDLargeSamples = uniroot(function(l) kolmogorov(l) - 0.05, c(1, 2), tol = 1e-12)$root / root)

variances <- function(files, a, b, alpha) {
  test <- if (var(a) > var(b)) var.test(a, b, conf.level = 1 - alpha) else var.test(b, a, conf.level = 1 - alpha)
  f <- test$statistic[[1]]
  df <- test$parameter
  row(paste("variances --alpha", alpha, files),
    p = test$p.value, lowerTail = pf(f, df[[1]], df[[2]]), criticalF = qf(1 - alpha / 2, df[[1]], df[[2]]),
    "ratioLimits/lower" = test$conf.int[1], "ratioLimits/upper" = test$conf.int[2],
    "varianceLimits1/lower" = variance_limits(a, alpha)[1], "varianceLimits1/upper" = variance_limits(a, alpha)[2],
    "varianceLimits2/lower" = variance_limits(b, alpha)[1], "varianceLimits2/upper" = variance_limits(b, alpha)[2])
}
instrument <- split(resistivity$y, resistivity$x)
variances("nist_sirstv_instrument1.txt nist_sirstv_instrument2.txt", instrument[[1]], instrument[[2]], 0.05)
variances("nist_sirstv_instrument1.txt cavendish.txt", instrument[[1]], cavendish, 0.01)

pairs <- function(arguments, x, y) {
  test <- cor.test(x, y)
  row(arguments, r = test$estimate[[1]], p = test$p.value, rSquared = test$estimate[[1]]^2, maximumX = max(x), maximumY = max(y),
    "limitsR/lower" = test$conf.int[1], "limitsR/upper" = test$conf.int[2])
}
pairs("pairs toothgrowth_supp.txt", supplements$x, supplements$y)
