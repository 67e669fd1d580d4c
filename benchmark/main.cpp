#include "Data.h"
#include "Implementations.h"
#include "Report.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstdio>
#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr std::unique_ptr<Implementation> (*allImplementations[])(int) = {
    makePlugin, makeReferenceModel, makeSqlite, makeSqliteFullText, makeProxyModel, makeLowerBound};

// The stand-in's model moves all later rows for each row that it inserts. That takes minutes with a
// million items, and a view cell never shows so many.
constexpr int MaxTimelineItems = 100'000;

/// Prints like Google Benchmark and adds the medians to the report.
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    MedianReporter(Report &report, int size)
        : ConsoleReporter(OO_Tabular)
        , m_report(report)
        , m_size(size)
    {
    }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            // A single repetition has no aggregates.
            if (run.aggregate_name != "median" && run.repetitions != 1)
                continue;
            const QString name = QString::fromStdString(run.run_name.function_name);
            m_report.add(name.section(u'/', 0, 0), name.section(u'/', 1), m_size,
                         run.GetAdjustedRealTime());
        }
        ConsoleReporter::ReportRuns(runs);
    }

private:
    Report &m_report;
    int m_size;
};

/// Measures all implementations with one number of bookmarks.
void measure(int size, Report &report)
{
    report.setFigures(size, measurePlugin(size));

    std::vector<std::unique_ptr<Implementation>> implementations;
    for (const auto make : allImplementations)
        implementations.push_back(make(size));

    for (const Job job : allJobs) {
        if (job == Job::TimelineItems && size > MaxTimelineItems)
            continue;
        for (const auto &implementation : implementations) {
            const std::function<void()> work = implementation->work(job);
            if (!work)
                continue;
            const std::string name = nameOf(job) + std::string("/") + implementation->name();
            auto *const registered = benchmark::RegisterBenchmark(
                name.c_str(), [work, job, &implementation](benchmark::State &state) {
                    implementation->prepare(job);
                    for (auto _ : state) {
                        work();
                        // Only for these jobs: pausing takes longer than some other jobs.
                        if (isPreparedEachTime(job)) {
                            state.PauseTiming();
                            implementation->prepare(job);
                            state.ResumeTiming();
                        }
                    }
                });
            registered->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
            // Measure jobs that take seconds only once.
            const std::string implementationName = implementation->name();
            const bool isPlugin = implementationName == "Tessaline";
            if ((size >= 100'000 && implementationName == "reference model") ||
                (size >= 1'000'000 && !isPlugin))
                registered->Iterations(1)->Repetitions(1);
            else if (isPreparedEachTime(job)) // the preparation may take far longer than the job
                registered->Iterations(5)->Repetitions(5);
            else
                registered->Repetitions(5)->MinTime(0.02);
        }
    }
    MedianReporter reporter(report, size);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::ClearRegisteredBenchmarks();
}

} // namespace

int main(int argc, char *argv[])
{
    // Keep freed memory: a client that has run for hours already has it, and returning it to the
    // system after each repetition would be measured as work.
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_MMAP_THRESHOLD, std::numeric_limits<int>::max());
    // Dates with two-digit years, times without seconds.
    qputenv("LC_ALL", "en_US.UTF-8");
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"tessaline-benchmark"_s);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Measures the built library and other implementations of the same jobs. Writes "
        "benchmark.json and benchmark.svg."_s);
    parser.addHelpOption();
    const QCommandLineOption sizes(u"sizes"_s, u"Numbers of bookmarks, separated by commas."_s,
                                   u"list"_s, u"10000,100000,1000000"_s);
    const QCommandLineOption folder(u"out"_s, u"Write the files to this folder."_s, u"folder"_s,
                                    u"out"_s);
    const QCommandLineOption library(u"library"_s, u"Measure this library instead."_s, u"file"_s);
    parser.addOptions({sizes, folder, library});
    parser.process(app);
    if (parser.isSet(library))
        setLibrary(parser.value(library));

    // Interleave repetitions, so that a slow moment of the machine affects all benchmarks.
    char interleaved[] = "--benchmark_enable_random_interleaving=true";
    char aggregates[] = "--benchmark_display_aggregates_only=true";
    char *flags[] = {argv[0], interleaved, aggregates, nullptr};
    int flagCount = 3;
    benchmark::Initialize(&flagCount, flags);

    QStringList jobs;
    for (const Job job : allJobs)
        jobs.append(QString::fromUtf8(nameOf(job)));
    QStringList implementations;
    for (const auto make : allImplementations)
        implementations.append(QString::fromUtf8(make(1)->name()));
    Report report(jobs, implementations);
    for (const QString &size : parser.value(sizes).split(u',')) {
        const int count = size.toInt();
        if (count <= 0) {
            std::fprintf(stderr, "--sizes: \"%s\" is not a number of bookmarks above 0.\n",
                         qPrintable(size));
            return 2;
        }
        measure(count, report);
        std::fputs(qPrintable(report.table(count)), stdout);
        std::fflush(stdout);
    }
    if (!report.write(parser.value(folder))) {
        std::fprintf(stderr, "%s: can't write benchmark.json and benchmark.svg to this folder.\n",
                     qPrintable(parser.value(folder)));
        return 1;
    }
    return 0;
}
