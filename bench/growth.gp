# The pictures of growing cost in docs/benchmarks.md: gnuplot -e "data='FOLDER'; pictures='FOLDER'; analyses=N" growth.gp
set terminal svg size 800,520 font 'sans,13' background '#ffffff'
set border 3
set tics nomirror out
set logscale xy
set format x '10^{%T}'
set format y '%g'
set yrange [1:200]

set output pictures.'/growth_observations.svg'
set title 'Time of an analysis; a level line is a cost in proportion to n'
set xlabel 'observations n'
set ylabel 'processor time, ns per observation'
set xrange [1e3:1e7]
set key outside right top noenhanced
file = data.'/observations.dat'
plot for [i=2:9] file using 1:i with linespoints lw 1.5 pt (i) ps 0.6 title columnheader(i), \
     for [i=10:analyses+1] file using 1:i with linespoints lw 1.5 lc (i-9) pt (i) ps 0.6 dashtype 2 title columnheader(i)

set output pictures.'/growth_groups.svg'
set title 'Anova of 10^{6} pairs, grouping included'
set xlabel 'groups'
set ylabel 'processor time, ns per pair'
set xrange [1e1:1e6]
unset key
plot data.'/groups.dat' using 1:2 skip 1 with linespoints lw 2 pt 7 ps 0.6 lc rgb '#aa3333'
