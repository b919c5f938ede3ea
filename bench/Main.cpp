#include <benchmark/benchmark.h>

#include "bench/BenchPage.h"

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    velmora::bench::ThePage();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
