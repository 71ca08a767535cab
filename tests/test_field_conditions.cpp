// The barcode reader on VIN labels as a hand holds them at a car: the region finder places and
// turns a code's region, and each field condition at the worst the field-conditions set holds is
// read within ten frames of a steady picture.
#include "platform/capture/BarcodeReader_p.h"
#include "platform/capture/CodeRegions_p.h"
#include "platform/capture/MetadataOutput.h"
#include "platform/capture/RegionViews_p.h"

#include <FieldConditions.h>

#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <functional>

using namespace ZQTPlatform;
using BarcodeArt::Symbology;
using FieldConditions::FieldScene;

namespace {

const QString vin = QStringLiteral("1HGCM82633A004352");

// A sharp, well-lit label: the conditions a case adds are the only ones in its frames.
FieldScene cleanScene(Symbology symbology, QSize frameSize = {1280, 720})
{
    FieldScene scene;
    scene.symbology = symbology;
    scene.vin = vin;
    scene.frameSize = frameSize;
    scene.modulePixels = symbology == Symbology::DataMatrix ? 8 : 2.2;
    scene.defocusPixels = 0.5;
    scene.jpegQuality = 85;
    return scene;
}

std::string symbologyName(Symbology symbology)
{
    return FieldConditions::symbologyName(symbology).remove(QLatin1Char(' ')).toStdString();
}

// Whether a steady picture of the scene gives its VIN within ten frames, and nothing else.
bool isReadWithinTenFrames(const FieldScene &scene, const QStringList &types)
{
    const FieldConditions::SteadyCamera camera(scene);
    const BarcodeReader reader(types);
    bool read = false;
    for (int frame = 0; frame < 10 && !read; ++frame) {
        for (const DecodedBarcode &code : reader.read(camera.frame(frame), quint64(frame))) {
            EXPECT_EQ(code.text, scene.vin);
            read = read || code.text == scene.vin;
        }
    }
    return read;
}

// ---- Region finder ----

// The strongest region is the code: centred on the label's symbol, 1-D or not as the symbology,
// and for bars turned as the label is, also when a hand's motion across the bars has smeared
// their edges more than their ends.
TEST(CodeRegionFinder, FindsTheCodeAndItsDirection)
{
    const struct { Symbology symbology; double rotation, keystone, motionAcross; } labels[] = {
        {Symbology::Code39, 0, 0, 0},     {Symbology::Code39, 15, 0.35, 0}, {Symbology::Code128, -15, 0.2, 0},
        {Symbology::Code93, 8, 0.35, 0}, {Symbology::DataMatrix, 12, 0.3, 0}, {Symbology::Code128, 10, 0.1, 2},
        {Symbology::Code39, -12, 0.3, 3},
    };
    for (const auto &label : labels) {
        SCOPED_TRACE(symbologyName(label.symbology) + " turned " + std::to_string(label.rotation));
        FieldScene scene = cleanScene(label.symbology);
        scene.rotationDegrees = label.rotation;
        scene.keystone = label.keystone;
        scene.whiteLevel = 0.4;
        scene.motionModules = label.motionAcross;
        scene.motionDegrees = label.rotation;
        const QImage frame = FieldConditions::SteadyCamera(scene).frame(0);
        const PixelLayout layout{frame.constBits(), frame.width(), frame.height(), int(frame.bytesPerLine())};

        const QList<CodeRegion> regions = findCodeRegions(greyMatrix(layout), 3);
        ASSERT_FALSE(regions.isEmpty());
        const CodeRegion &code = regions.first();
        const bool linear = scene.symbology != Symbology::DataMatrix;
        EXPECT_EQ(code.linear, linear);
        // The symbol sits above the printed VIN, within a tenth of the frame of the label's centre.
        const QPointF labelCentre(frame.width() / 2.0, frame.height() / 2.0);
        EXPECT_LT(std::hypot(code.centre.x() - labelCentre.x(), code.centre.y() - labelCentre.y()), frame.width() / 10.0);
        if (linear) {
            EXPECT_NEAR(std::remainder(code.axisDegrees - scene.rotationDegrees, 180.0), 0, 3);
            EXPECT_GT(code.length, 2 * code.thickness);
        }
    }
}

// A faint glare spot beside a rectangular Data Matrix seen at an angle: its region covers only the
// symbol's far part, and the view read around it still holds the whole symbol with a quiet zone.
TEST(CodeRegionFinder, AMatrixFoundInPartIsReadWhole)
{
    FieldScene scene = cleanScene(Symbology::DataMatrix);
    scene.vin = QStringLiteral("4A31K3DT4CE403200");
    scene.modulePixels = 9.66;
    scene.keystone = 0.11;
    scene.rotationDegrees = -6.3;
    scene.motionModules = 0.42;
    scene.motionDegrees = 151;
    scene.whiteLevel = 0.53;
    scene.glare = 0.35;
    scene.glareAt = QPointF(0.24, 0.57);
    scene.jpegQuality = 42;
    scene.centre = QPointF(0.47, 0.41);
    EXPECT_TRUE(isReadWithinTenFrames(scene, {MetadataObject::typeDataMatrix}));
}

// ---- Paper and ink along a line ----

// The running extreme is the dilation (erosion) with a centred window of the same size, for odd
// and even windows, a window of one, and windows longer than the line.
TEST(LineLevels, RunningExtremeIsTheCentredDilationAndErosion)
{
    cv::Mat line(1, 301, CV_32F);
    cv::RNG(7).fill(line, cv::RNG::UNIFORM, 0, 255);
    for (int window : {1, 2, 3, 8, 9, 40, 151, 300, 301, 640}) {
        SCOPED_TRACE("window " + std::to_string(window));
        const cv::Mat kernel = cv::Mat::ones(1, window, CV_8U);
        cv::Mat dilated, eroded;
        cv::dilate(line, dilated, kernel);
        cv::erode(line, eroded, kernel);
        EXPECT_EQ(cv::norm(runningExtreme(line, window, true), dilated, cv::NORM_INF), 0);
        EXPECT_EQ(cv::norm(runningExtreme(line, window, false), eroded, cv::NORM_INF), 0);
    }
}

// ---- Each condition at its worst ----

struct Condition { const char *name; std::function<void(FieldScene &)> apply; };

const Condition conditions[] = {
    {"Keystone35", [](FieldScene &scene) { scene.keystone = 0.35; }},
    {"Turned15", [](FieldScene &scene) { scene.rotationDegrees = -15; }},
    {"WhiteAtAQuarter", [](FieldScene &scene) { scene.whiteLevel = 0.25; }},
    // The spot's peak takes the paper past full scale; the bars under it keep a little contrast.
    {"GlareOverADimLabel", [](FieldScene &scene) {
         scene.whiteLevel = 0.5;
         scene.glare = 0.9;
         scene.glareAt = QPointF(0.4, 0.5);
     }},
    // A spot over one end of the code hides that end from the region finder.
    {"GlareAtOneEnd", [](FieldScene &scene) {
         scene.whiteLevel = 0.6;
         scene.glare = 0.7;
         scene.glareAt = QPointF(0.1, 0.5);
     }},
    {"Defocus", [](FieldScene &scene) { scene.defocusPixels = 1.2; }},
    {"Jpeg35", [](FieldScene &scene) { scene.jpegQuality = 35; }},
    // Last: a smear of four modules leaves no cell of a Data Matrix, whichever way it goes.
    {"MotionAlongTheBars", [](FieldScene &scene) {
         scene.motionModules = 4;
         scene.motionDegrees = 90;
     }},
};

class FieldCondition : public ::testing::TestWithParam<std::tuple<Symbology, int>> {};

// Read within ten frames of a steady picture, with the exact VIN and nothing else.
TEST_P(FieldCondition, IsReadWithinTenFrames)
{
    const auto [symbology, condition] = GetParam();
    FieldScene scene = cleanScene(symbology, QSize(1920, 1080));
    conditions[condition].apply(scene);
    EXPECT_TRUE(isReadWithinTenFrames(scene, {MetadataObject::typeCode39, MetadataObject::typeCode93,
                                              MetadataObject::typeCode128, MetadataObject::typeDataMatrix}));
}

const auto conditionName = [](const auto &info) {
    return symbologyName(std::get<0>(info.param)) + "_" + conditions[std::get<1>(info.param)].name;
};

INSTANTIATE_TEST_SUITE_P(LinearLabels, FieldCondition,
                         ::testing::Combine(::testing::Values(Symbology::Code39, Symbology::Code93, Symbology::Code128),
                                            ::testing::Range(0, int(std::size(conditions)))),
                         conditionName);
INSTANTIATE_TEST_SUITE_P(MatrixLabels, FieldCondition,
                         ::testing::Combine(::testing::Values(Symbology::DataMatrix),
                                            ::testing::Range(0, int(std::size(conditions)) - 1)),
                         conditionName);

} // namespace
