// Uses the installed component as a host would: VIN check, configuration and the capture screen.
#include <ZQTVINScanComponent.h>

#include <QApplication>

#include <cstdio>

namespace {

class PrintingDelegate : public VinScannerVCDelegate
{
public:
    void didCompleteScanning(const QString &VIN, bool isVINScanned, bool isVINValid,
                             const ZQTError &error) override
    {
        std::printf("%s %d %d %d\n", qPrintable(VIN), isVINScanned, isVINValid, error.isNull());
    }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (!VINUtility::checkVINValidity(QStringLiteral("1HGCM82633A004352")))
        return 1;
    if (ZQTVINScanComponentConstants::getConfigStringForKey(QStringLiteral("TextTitle")) == QLatin1String("(null)"))
        return 2;
    PrintingDelegate delegate;
    ZQTVINCaptureVC *screen = ZQTVINCaptureVC::createVinScannerViewWithDelegate(&delegate, QStringLiteral("claim-1"));
    if (!screen || screen->claimId() != QLatin1String("claim-1"))
        return 3;
    delete screen;
    std::puts("consumer ok");
    return 0;
}
