// What a configuration read costs: one typed getter over the host's settings file (a copy of the
// shipped ZQTConfig.plist, about a hundred keys) against parsing that file once, the work every
// read would do without the parsed copy, measured in the same run.
//
// Run: bench_configuration [--benchmark_repetitions=N]. The ratio printed last is the figure that
// matters; the times above it depend on the machine.
#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/PropertyList.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>

namespace {

QString hostSettingsPath()
{
    static QTemporaryDir folder;
    static const QString path = [] {
        const QString copy = folder.filePath(QStringLiteral("Default_Settings.plist"));
        QFile::copy(ZQTPlatform::Bundle::frameworkBundle().pathForResource(QStringLiteral("ZQTConfig"),
                                                                          QStringLiteral("plist")),
                    copy);
        ZQTPlatform::Bundle::setMainBundlePath(folder.path());
        return copy;
    }();
    return path;
}

void BM_ParseSettingsFile(benchmark::State &state)
{
    const QString path = hostSettingsPath();
    for (auto _ : state)
        benchmark::DoNotOptimize(ZQTPlatform::PropertyList::readFile(path));
}

void BM_ConfiguredString(benchmark::State &state)
{
    hostSettingsPath();
    for (auto _ : state)
        benchmark::DoNotOptimize(ZQTVINScanComponentConstants::getConfigStringForKey(QStringLiteral("TextTitle")));
}

BENCHMARK(BM_ParseSettingsFile)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ConfiguredString)->Unit(benchmark::kMicrosecond);

// Prints as usual and keeps each benchmark's real time (the median when repeated).
class TimeKeeper : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            const std::string &name = run.run_name.function_name;
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                m_median[name] = run.GetAdjustedRealTime();
            else if (run.run_type == Run::RT_Iteration)
                m_last[name] = run.GetAdjustedRealTime();
        }
    }
    double time(const std::string &name) const
    {
        for (const auto *times : {&m_median, &m_last}) {
            const auto found = times->find(name);
            if (found != times->end())
                return found->second;
        }
        return NAN;
    }

private:
    std::map<std::string, double> m_median;
    std::map<std::string, double> m_last;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    if (QFile(hostSettingsPath()).size() == 0) {
        std::fprintf(stderr, "the shipped configuration could not be copied\n");
        return 1;
    }
    TimeKeeper reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    std::printf("\nconfigured string / parse of the settings file: %.3f  (goal: well under 1)\n",
                reporter.time("BM_ConfiguredString") / reporter.time("BM_ParseSettingsFile"));
    return 0;
}
