# The pictures of docs/accuracy.md: gnuplot -e "data='FOLDER'; pictures='FOLDER'" plots.gp
set terminal svg size 800,500 font 'sans,13' background '#ffffff'
set border 3
set tics nomirror out
set key top right
exact = "with lines lw 2 lc rgb '#888888' title 'exact'"
library = "with lines lw 2 lc rgb '#aa3333' title 'library'"

draw(name) = sprintf("set output '%s/%s.svg'; plot '%s/%s.dat' using 1:3 %s, '' using 1:2 %s", pictures, name, data, name, exact, library)

set title 'Critical F, p = 0.95, 1 numerator degree of freedom'
set xlabel 'denominator degrees of freedom'
set ylabel 'F'
set yrange [2.5:8]
eval draw('accuracy_F_point')

set title 'P(F), 1 and 28 degrees of freedom'
set xlabel 'F'
set ylabel 'P(F), lower tail'
set yrange [-0.5:2]
set key bottom right
eval draw('accuracy_F_prob')

set title 'Two-sided p of t, 9 degrees of freedom'
set xlabel 't'
set ylabel 'p'
set yrange [-2:1.2]
set key top right
eval draw('accuracy_t_odd')

set title 'Chi-square quantile, 1 degree of freedom'
set xlabel 'p, lower tail'
set ylabel 'chi-square'
set yrange [-1:8]
set key top left
eval draw('accuracy_chi_square')
