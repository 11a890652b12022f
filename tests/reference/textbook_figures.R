# What R says of an analysis, by the names that these figures have in the object "textbook" of wqstat --json. Sourced by the scripts
# beside it. Each function returns a named vector.

split_limits <- function(name, limits) setNames(as.vector(limits), paste0(name, c("/lower", "/upper")))

variance_limits <- function(name, values, alpha) {
  df <- length(values) - 1
  split_limits(name, df * var(values) / qchisq(c(1 - alpha / 2, alpha / 2), df))
}

# All values are taken relative to the first, which loses no digit, and t.test keeps those that large values would cost it.
describe_figures <- function(values, mu = 0, alpha = 0.05) {
  origin <- values[1]
  rest <- values - origin
  test <- t.test(rest, mu = mu - origin, conf.level = 1 - alpha)
  df <- length(values) - 1
  c(p = test$p.value, criticalT = qt(1 - alpha / 2, df), criticalTHalfAlpha = qt(1 - alpha / 4, df),
    split_limits("confidenceLimits", test$conf.int + origin), variance_limits("varianceLimits", rest, alpha),
    cohensD = (mean(rest) - (mu - origin)) / sd(rest))
}

regress_figures <- function(x, y, alpha = 0.05) {
  line <- lm(y ~ x)
  at_mean <- predict(line, data.frame(x = mean(x)), interval = "confidence", level = 1 - alpha)
  c(pB = summary(line)$coefficients[2, 4], criticalT = qt(1 - alpha / 2, length(x) - 2),
    split_limits("limitsB", confint(line, level = 1 - alpha)[2, ]), split_limits("limitsY", at_mean[2:3]),
    rSquared = summary(line)$r.squared, adjustedRSquared = summary(line)$adj.r.squared)
}

correlate_figures <- function(x, y, alpha = 0.05) {
  test <- cor.test(x, y, conf.level = 1 - alpha)
  r <- abs(test$estimate[[1]])
  df <- length(x) - 2
  upper <- pf((1 + r) / (1 - r), df, df, lower.tail = FALSE)
  c(rSquared = r^2, pT = test$p.value, criticalT = qt(1 - alpha / 2, df), FSignificance = upper, pF = 2 * upper,
    criticalF = qf(1 - alpha / 2, df, df), split_limits("confidenceLimitsR", test$conf.int),
    split_limits("confidenceLimits", atanh(test$conf.int)))
}

pairs_figures <- function(x, y) {
  test <- cor.test(x, y)
  c(r = test$estimate[[1]], p = test$p.value, rSquared = test$estimate[[1]]^2, maximumX = max(x), maximumY = max(y),
    split_limits("limitsR", test$conf.int))
}

# Of the means of the groups in the order of the data, by the variance within all of them.
group_limits <- function(x, y, alpha) {
  group <- factor(x, unique(x))
  limits <- predict(lm(y ~ group), data.frame(group = levels(group)), interval = "confidence", level = 1 - alpha)
  unlist(lapply(seq_len(nrow(limits)), function(i) split_limits(paste0("groupLimits/", i - 1), limits[i, c("lwr", "upr")])))
}

# Relative to the first observation, as above.
anova_figures <- function(x, y, alpha = 0.05) {
  table <- summary(aov(rest ~ group, data.frame(group = factor(x), rest = y - y[1])))[[1]]
  ss <- table$"Sum Sq"
  ms <- table$"Mean Sq"
  f <- table$"F value"[1]
  c(msAmong = ms[1], msWithin = ms[2], etaSquared = ss[1] / sum(ss), omegaSquared = (ss[1] - table$Df[1] * ms[2]) / (sum(ss) + ms[2]),
    fs = f, p = pf(f, table$Df[1], table$Df[2], lower.tail = FALSE), lowerTail = pf(f, table$Df[1], table$Df[2]),
    criticalF = qf(1 - alpha, table$Df[1], table$Df[2]), group_limits(x, y - y[1], alpha) + y[1])
}

multiy_figures <- function(x, y, alpha = 0.05) {
  groups <- anova(lm(y ~ factor(x)))
  deviations <- anova(lm(y ~ x), lm(y ~ factor(x)))
  df <- deviations$Df[2]
  ms <- deviations$"Sum of Sq"[2] / df
  b <- coef(lm(y ~ x))[[2]]
  se <- sqrt(ms / sum((x - mean(x))^2))
  t <- qt(1 - alpha / 2, df)
  c("among/fs" = groups$F[1], "among/p" = groups$P[1], "among/lowerTail" = pf(groups$F[1], groups$Df[1], groups$Df[2]),
    "among/criticalF" = qf(1 - alpha, groups$Df[1], groups$Df[2]), "deviations/df" = df, "deviations/ms" = ms,
    "deviations/fs" = deviations$F[2], "deviations/p" = deviations$P[2], "deviations/criticalF" = qf(1 - alpha, df, groups$Df[2]),
    "deviations/lowerTail" = pf(deviations$F[2], df, groups$Df[2]), "regression/fs" = (b / se)^2,
    rSquared = summary(lm(y ~ x))$r.squared, b = b, seB = se, tB = b / se, pT = 2 * pt(-abs(b / se), df), criticalT = t,
    split_limits("limitsB", b + c(-t, t) * se), group_limits(x, y, alpha))
}

# q divides G, as Williams has it; 1 where there is no such correction.
williams <- function(observed) 1 + (length(observed)^2 - 1) / (6 * sum(observed) * (length(observed) - 1))

fit_figures <- function(observed, expected, q, alpha = 0.05) {
  n <- sum(observed)
  x2 <- if (isTRUE(all.equal(n, sum(expected), tolerance = 1e-12))) {
    suppressWarnings(chisq.test(observed, p = expected, rescale.p = TRUE))$statistic[[1]]
  } else {
    sum((observed - expected)^2 / expected)  # chisq.test knows no sums that differ
  }
  g <- 2 * sum(ifelse(observed > 0, observed * log(observed / expected), 0))
  df <- length(observed) - 1
  tails <- function(name, x) setNames(c(pchisq(x, df), pchisq(x, df, lower.tail = FALSE)), paste0(name, c("/lowerTail", "/p")))
  shares <- expected / sum(expected)
  figures <- c(tails("X2", x2), tails("G", g), criticalChiSquare = qchisq(1 - alpha, df),
    cohensW = sqrt(sum((observed / n - shares)^2 / shares)))
  if (q != 1) c(figures, tails("GAdjusted", g / q)) else figures
}

kolmogorov <- function(lambda) {  # the upper tail; ks.test stops this series after some six digits
  k <- 1:100
  if (lambda < 0.2) 1 else 2 * sum((-1)^(k - 1) * exp(-2 * k^2 * lambda^2))
}

ks_figures <- function(first, second, alpha = 0.05) {
  root <- sqrt(sum(first) * sum(second) / (sum(first) + sum(second)))
  classes <- seq_along(first)
  test <- suppressWarnings(ks.test(rep(classes, first), rep(classes, second), exact = FALSE))
  p <- kolmogorov(test$statistic[[1]] * root)
  stopifnot(abs(p - test$p.value) < 1e-5)
  critical <- uniroot(function(l) kolmogorov(l) - alpha, c(0.2, 4), tol = 1e-14)$root / root
  figures <- c(pLargeSamples = p, criticalDLargeSamples = critical)
  if (sum(first) * sum(second) > 10000) return(figures)
  c(figures, pTheseSizes = suppressWarnings(ks.test(rep(classes, first), rep(classes, second), exact = TRUE))$p.value)
}

variances_figures <- function(a, b, alpha = 0.05) {
  a <- a - a[1]
  b <- b - b[1]
  test <- if (var(a) > var(b)) var.test(a, b, conf.level = 1 - alpha) else var.test(b, a, conf.level = 1 - alpha)
  f <- test$statistic[[1]]
  df <- test$parameter
  p <- 2 * pf(f, df[[1]], df[[2]], lower.tail = FALSE)  # var.test takes it as 1 minus the rest
  stopifnot(abs(min(p, 2 - p) - test$p.value) < 1e-14)
  c(F = f, p = min(p, 2 - p), lowerTail = pf(f, df[[1]], df[[2]]), criticalF = qf(1 - alpha / 2, df[[1]], df[[2]]),
    split_limits("ratioLimits", test$conf.int), variance_limits("varianceLimits1", a, alpha), variance_limits("varianceLimits2", b, alpha))
}

# ---------------------------------------------------------------- data files

numbers_in <- function(file) {
  lines <- sub("#.*", "", readLines(file, encoding = "UTF-8"))
  lapply(strsplit(trimws(lines[grepl("[0-9]", lines)]), "[;:|]"), as.numeric)
}

one_column <- function(file) unlist(numbers_in(file))

two_columns <- function(file) {
  rows <- numbers_in(file)
  data.frame(x = vapply(rows, `[`, 0, 1), y = vapply(rows, `[`, 0, 2))
}

# Each y as often as the third column says; a count left out is the one before.
repeated <- function(file) {
  rows <- numbers_in(file)
  count <- vapply(rows, `[`, 0, 3)
  for (i in which(is.na(count))) count[i] <- count[i - 1]
  data.frame(x = rep(vapply(rows, `[`, 0, 1), count), y = rep(vapply(rows, `[`, 0, 2), count))
}
