#!/usr/bin/env Rscript
# Makes textbook.csv: what R says about the shipped data sets, for the figures of wqstat --textbook.
# Usage: Rscript textbook.R > textbook.csv
#
# arguments: those of wqstat, the names of the files without their folder; path: of the figure in the object "textbook".

here <- dirname(sub("^--file=", "", grep("^--file=", commandArgs(), value = TRUE)))
source(file.path(here, "textbook_figures.R"))
shipped <- function(name) file.path(here, "..", "..", "examples", "data", name)

cat("# Made by textbook.R\narguments,path,value\n")
row <- function(arguments, figures) cat(sprintf("%s,%s,%.15g\n", arguments, names(figures), figures), sep = "")

cavendish <- one_column(shipped("cavendish.txt"))
row("describe --mu 5.517 cavendish.txt", describe_figures(cavendish, 5.517))
row("describe --alpha 0.01 --mu 5.4 cavendish.txt", describe_figures(cavendish, 5.4, 0.01))
row("describe --alpha 0.2 --head 0.25 --tail 0.25 --mu 5.5 cavendish.txt",
  describe_figures(sort(cavendish)[9:22], 5.5, 0.2))  # 8 and 7 left out

norris <- two_columns(shipped("nist_norris.txt"))
row("regress --model linear nist_norris.txt", regress_figures(norris$x, norris$y))
positive <- subset(norris, y > 0)
row("regress --alpha 0.001 --model power nist_norris.txt", regress_figures(log(positive$x), log(positive$y), 0.001))
row("regress --model logarithmic nist_norris.txt", regress_figures(log(norris$x), norris$y))

supplements <- two_columns(shipped("toothgrowth_supp.txt"))
row("correlate --alpha 0.01 toothgrowth_supp.txt", correlate_figures(supplements$x, supplements$y, 0.01))

resistivity <- two_columns(shipped("nist_sirstv.txt"))
row("anova nist_sirstv.txt", anova_figures(resistivity$x, resistivity$y))
row("anova toothgrowth_supp.txt", anova_figures(supplements$x, supplements$y))
row("anova --alpha 0.1 toothgrowth_supp.txt", anova_figures(supplements$x, supplements$y, 0.1))

seedlings <- repeated(shipped("seedlings.txt"))
row("multiy seedlings.txt", multiy_figures(seedlings$x, seedlings$y))

peas <- two_columns(shipped("mendel_peas.txt"))
row("fit mendel_peas.txt", fit_figures(peas$x, peas$y, williams(peas$x)))
row("fit --no-williams mendel_peas.txt", fit_figures(peas$x, peas$y, 1))

digits <- two_columns(shipped("pi_e_digits.txt"))
row("ks pi_e_digits.txt", ks_figures(digits$x, digits$y))

instrument <- split(resistivity$y, resistivity$x)
row("variances --alpha 0.05 nist_sirstv_instrument1.txt nist_sirstv_instrument2.txt", variances_figures(instrument[[1]], instrument[[2]]))
row("variances --alpha 0.01 nist_sirstv_instrument1.txt cavendish.txt", variances_figures(instrument[[1]], cavendish, 0.01))

row("pairs toothgrowth_supp.txt", pairs_figures(supplements$x, supplements$y))
