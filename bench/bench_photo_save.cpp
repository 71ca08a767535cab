// What storing a camera photo costs: saving a 4032 x 3024 photo through the claim photo store
// (scale, JPEG at 0.65, decode, JPEG at 1.0, atomic write) against the floor of the work any
// store of an 800-pixel JPEG must do (one scale and one JPEG encode), measured in the same run;
// and how resident memory grows over 100 saves in a row.
//
// Run: bench_photo_save [--benchmark_repetitions=N]. The figures that matter are printed last,
// as ratios and a growth in MB; the per-benchmark times above them depend on the machine.
#include "Utils/ZQTVINScanUtils.h"
#include "Utils/ZQTVINScanUtils_p.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>

#include <unistd.h>

namespace {

using ZQTPlatform::Image;

// A deterministic stand-in for a phone photo of a car: smooth shading, hard edges, a striped
// grille and a little sensor noise.
const Image &cameraPhoto()
{
    static const Image photo = [] {
        QImage bitmap(4032, 3024, QImage::Format_RGB32);
        for (int y = 0; y < bitmap.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(bitmap.scanLine(y));
            for (int x = 0; x < bitmap.width(); ++x) {
                const quint32 hash = (quint32(x) * 73856093u) ^ (quint32(y) * 19349663u);
                const int noise = int((hash * 2654435761u) >> 29) - 4;
                const bool body = y > 1200 && y < 2600 && x > 500 && x < 3500;
                const bool grille = body && y > 2000 && y < 2300 && (x / 12) % 2 == 0;
                const int shade = body ? 60 + (x - 500) / 30 : 150 + y / 30;
                const int r = grille ? 20 : body ? shade + 80 : shade / 2;
                const int g = grille ? 20 : body ? shade / 3 : shade;
                const int b = grille ? 25 : body ? shade / 4 : 230 - y / 40;
                line[x] = qRgb(qBound(0, r + noise, 255), qBound(0, g + noise, 255), qBound(0, b + noise, 255));
            }
        }
        return Image(bitmap);
    }();
    return photo;
}

QString scratchFolder()
{
    static QTemporaryDir folder;
    return folder.path();
}

qint64 residentBytes()
{
    long pages = 0;
    long resident = 0;
    if (FILE *statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(statm);
    }
    return qint64(resident) * sysconf(_SC_PAGESIZE);
}

double psnr(const QImage &a, const QImage &b)
{
    double squares = 0;
    for (int y = 0; y < a.height(); ++y) {
        const auto *p = reinterpret_cast<const QRgb *>(a.constScanLine(y));
        const auto *q = reinterpret_cast<const QRgb *>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const int d[] = {qRed(p[x]) - qRed(q[x]), qGreen(p[x]) - qGreen(q[x]), qBlue(p[x]) - qBlue(q[x])};
            squares += d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
        }
    }
    return 10.0 * std::log10(255.0 * 255.0 / (squares / (3.0 * a.width() * a.height())));
}

// The floor: the store's own scaling step and one encode of its 800-pixel result.
void BM_ScaleAndEncodeOnce(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ZQTVINScanUtilsPrivate::jpegData(ZQTVINScanUtilsPrivate::drawnForStorage(cameraPhoto()), 0.65f));
}

void BM_SavePhoto(benchmark::State &state)
{
    const QString path = scratchFolder() + "/photo.jpg";
    for (auto _ : state)
        ZQTVINScanUtils::writeFile(cameraPhoto(), path);
}

// For the choice of scaler: Qt's area-averaging scale of the same photo.
void BM_QtSmoothScale(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(cameraPhoto().bitmap().scaled(800, 600, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void BM_StoreScale(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ZQTVINScanUtilsPrivate::drawnForStorage(cameraPhoto()));
}

// 100 saves under different names after one warm-up save, which loads the JPEG plugin and
// fills the allocator's pools.
void BM_Save100Photos(benchmark::State &state)
{
    for (auto _ : state) {
        ZQTVINScanUtils::writeFile(cameraPhoto(), scratchFolder() + "/warm-up.jpg");
        const qint64 before = residentBytes();
        for (int i = 0; i < 100; ++i)
            ZQTVINScanUtils::writeFile(cameraPhoto(), scratchFolder() + QStringLiteral("/photo%1.jpg").arg(i));
        state.counters["rss_growth_MB"] = double(residentBytes() - before) / (1024.0 * 1024.0);
    }
}

BENCHMARK(BM_ScaleAndEncodeOnce)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SavePhoto)->Unit(benchmark::kMillisecond)->UseRealTime();
// Qt's scale spreads over threads of its own: count the whole process's CPU time.
BENCHMARK(BM_QtSmoothScale)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
BENCHMARK(BM_StoreScale)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
BENCHMARK(BM_Save100Photos)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

// Prints as usual and keeps each benchmark's real and CPU time (the median when repeated) and
// counters.
class RecordingReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if (!median && (run.run_type != Run::RT_Iteration || m_fromMedian.count(run.run_name.function_name)))
                continue;
            m_milliseconds[run.run_name.function_name] = run.GetAdjustedRealTime();
            m_cpuMilliseconds[run.run_name.function_name] = run.GetAdjustedCPUTime();
            if (median)
                m_fromMedian[run.run_name.function_name] = true;
            for (const auto &[name, counter] : run.counters)
                m_counters[name] = counter.value;
        }
    }

    double milliseconds(const std::string &name) const { return valueOr(m_milliseconds, name); }
    double cpuMilliseconds(const std::string &name) const { return valueOr(m_cpuMilliseconds, name); }
    double counter(const std::string &name) const { return valueOr(m_counters, name); }

private:
    static double valueOr(const std::map<std::string, double> &values, const std::string &name)
    {
        const auto found = values.find(name);
        return found == values.end() ? NAN : found->second;
    }

    std::map<std::string, double> m_milliseconds;
    std::map<std::string, double> m_cpuMilliseconds;
    std::map<std::string, bool> m_fromMedian;
    std::map<std::string, double> m_counters;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("zqt.vin.info=false")); // one line per save otherwise
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RecordingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    const double floor = reporter.milliseconds("BM_ScaleAndEncodeOnce");
    const double save = reporter.milliseconds("BM_SavePhoto");
    const QImage reference = cameraPhoto().bitmap().scaled(800, 600, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage ours = ZQTVINScanUtilsPrivate::drawnForStorage(cameraPhoto()).convertToFormat(QImage::Format_RGB32);
    std::printf("\nsave of a 4032 x 3024 photo / (one scale + one JPEG encode): %.2f  (goal: at most 2.2)\n", save / floor);
    std::printf("resident memory growth over 100 saves: %.2f MB  (goal: flat, under 5 MB)\n",
                reporter.counter("rss_growth_MB"));
    std::printf("store's scale / QImage::scaled(SmoothTransformation): %.2f of the wall time, %.2f of the CPU time, "
                "%.1f dB PSNR against it\n",
                reporter.milliseconds("BM_StoreScale") / reporter.milliseconds("BM_QtSmoothScale"),
                reporter.cpuMilliseconds("BM_StoreScale") / reporter.cpuMilliseconds("BM_QtSmoothScale"), psnr(ours, reference));
    return 0;
}
