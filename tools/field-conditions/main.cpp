// Writes the field-conditions set to a folder: frame-NNN.jpg, each with its expected VIN in
// frame-NNN.txt (no trailing newline) and what was done to it in frame-NNN.scene.
//
//   zqt-make-field-set FOLDER [--count 200] [--seed 18] [--vins real-vins.csv]
#include "FieldConditions.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTextStream>

namespace {

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

QByteArray description(const FieldConditions::FieldScene &scene)
{
    return QStringLiteral("symbology %1\nsize %2x%3\nmodule %4 px\nkeystone %5\nrotation %6 deg\nmotion %7 modules at %8 deg\n"
                          "defocus %9 px\nwhite %10\nglare %11\njpeg %12\n")
        .arg(FieldConditions::symbologyName(scene.symbology))
        .arg(scene.frameSize.width())
        .arg(scene.frameSize.height())
        .arg(scene.modulePixels, 0, 'f', 2)
        .arg(scene.keystone, 0, 'f', 2)
        .arg(scene.rotationDegrees, 0, 'f', 1)
        .arg(scene.motionModules, 0, 'f', 2)
        .arg(scene.motionDegrees, 0, 'f', 0)
        .arg(scene.defocusPixels, 0, 'f', 2)
        .arg(scene.whiteLevel, 0, 'f', 2)
        .arg(scene.glare, 0, 'f', 2)
        .arg(scene.jpegQuality)
        .toUtf8();
}

} // namespace

int main(int argc, char **argv)
{
    // Fonts for the printed VIN only: no display needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Writes VIN label frames in field conditions, each with its VIN."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("Where the frames go (made if missing)."));
    parser.addOption({QStringLiteral("count"), QStringLiteral("Number of frames."), QStringLiteral("n"), QStringLiteral("200")});
    parser.addOption({QStringLiteral("seed"), QStringLiteral("Seed of the set."), QStringLiteral("seed"), QStringLiteral("18")});
    parser.addOption({QStringLiteral("vins"), QStringLiteral("Real-VIN table (CSV)."), QStringLiteral("file"),
                      QStringLiteral(ZQT_REAL_VINS_CSV)});
    parser.process(app);
    QTextStream err(stderr);
    bool countOk = false;
    bool seedOk = false;
    const int count = parser.value(QStringLiteral("count")).toInt(&countOk);
    const quint32 seed = parser.value(QStringLiteral("seed")).toUInt(&seedOk);
    if (parser.positionalArguments().size() != 1 || !countOk || count < 1 || !seedOk) {
        err << parser.helpText();
        return 2;
    }
    const QStringList vins = FieldConditions::realVins(parser.value(QStringLiteral("vins")));
    if (vins.isEmpty()) {
        err << "no VINs in " << parser.value(QStringLiteral("vins")) << Qt::endl;
        return 2;
    }
    const QDir folder(parser.positionalArguments().first());
    if (!folder.mkpath(QStringLiteral("."))) {
        err << "cannot make " << folder.path() << Qt::endl;
        return 3;
    }
    for (int i = 0; i < count; ++i) {
        const FieldConditions::FieldScene scene = FieldConditions::sceneAt(i, seed, vins);
        const QString stem = folder.filePath(QStringLiteral("frame-%1").arg(i, 3, 10, QLatin1Char('0')));
        if (!writeFile(stem + QStringLiteral(".jpg"), FieldConditions::SteadyCamera(scene).jpegFrame(0))
            || !writeFile(stem + QStringLiteral(".txt"), scene.vin.toUtf8())
            || !writeFile(stem + QStringLiteral(".scene"), description(scene))) {
            err << "cannot write " << stem << Qt::endl;
            return 3;
        }
    }
    QTextStream(stdout) << count << " frames in " << folder.path() << Qt::endl;
    return 0;
}
