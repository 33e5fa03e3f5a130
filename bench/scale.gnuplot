# Draws what kvr_bench_scale wrote: time and memory for each thing, by how many there are. scripts/bench plot runs it.
set terminal svg size 900,420 font "sans-serif,12" background "white"
set output target
set multiplot layout 1,2
set logscale xy
set format x "10^{%T}"
set xlabel "things in the scene"
set grid
set key bottom right
set ylabel "BeginProcess, s"
names = "instances triangles files labels"
plot for [i=0:3] data index i using 1:2 with linespoints linewidth 2 pointtype 7 pointsize 0.6 title word(names, i + 1)
set ylabel "peak of memory, MB"
plot for [i=0:3] data index i using 1:($3/1e6) with linespoints linewidth 2 pointtype 7 pointsize 0.6 \
    title word(names, i + 1)
