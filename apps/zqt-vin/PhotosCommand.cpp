// zqt-vin photos list|path|delete --claim ID [TITLE]
// zqt-vin photos add --claim ID --title TITLE IMAGE
//
//   list              prints the claim's photo files as a JSON array of
//                     {"name", "path", "bytes"}, in the folder's order
//   path TITLE        prints {"path", "exists"} for the photo's file
//   delete TITLE      deletes the photo; prints {"deleted"}
//   add IMAGE         stores any image file under TITLE through the component's save path
//                     (scaled to at most 800 pixels, JPEG); prints {"path", "bytes", "width", "height"}
//
// The photos live in the claim photo store under the documents folder of the user running the
// tool. The component's log lines go to stderr.
// Exit status: 0 done, 1 no photos / no such photo, 2 usage error (also a claim id or title
// that cannot be a file name), 3 the image cannot be read or the photo was not stored (no room).
#include "Commands.h"

#include "Utils/ZQTVINScanUtils.h"

#include <QFileInfo>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonObject>

namespace ZqtVin {

namespace {

const char kUsage[] = "usage: zqt-vin photos list|path|delete --claim ID [TITLE]\n"
                      "       zqt-vin photos add --claim ID --title TITLE IMAGE\n";

struct Request
{
    QString action;
    QString claimId;
    QString title;        // --title (add)
    QStringList operands; // TITLE (path, delete) or IMAGE (add)
};

// Parses the arguments; the problem on a usage error, else empty.
QString parseRequest(const QStringList &args, Request &request)
{
    request.action = args.value(0);
    const Arguments parsed = parseArguments(args.mid(1), {QStringLiteral("--claim"), QStringLiteral("--title")});
    if (!parsed.problem.isEmpty())
        return parsed.problem;
    if (parsed.has("--claim"))
        request.claimId = parsed.value("--claim");
    if (parsed.has("--title"))
        request.title = parsed.value("--title");
    request.operands = parsed.operands;
    const qsizetype count = request.operands.size();
    const bool adding = request.action == QLatin1String("add");
    const bool byTitle = request.action == QLatin1String("path") || request.action == QLatin1String("delete");
    if (!adding && !byTitle && request.action != QLatin1String("list"))
        return request.action.isEmpty() ? QStringLiteral("no action given")
                                        : QStringLiteral("unknown action \"%1\"").arg(request.action);
    if (request.claimId.isNull())
        return QStringLiteral("--claim is required");
    if (adding) {
        if (request.title.isNull())
            return QStringLiteral("\"add\" needs --title");
        return count == 1 ? QString() : QStringLiteral("\"add\" takes one IMAGE");
    }
    if (!request.title.isNull())
        return QStringLiteral("--title is for \"add\"; \"%1\" takes the TITLE as an argument").arg(request.action);
    if (byTitle)
        return count == 1 ? QString() : QStringLiteral("\"%1\" takes one TITLE").arg(request.action);
    return count == 0 ? QString() : QStringLiteral("\"list\" takes no arguments");
}

int list(const QString &claimId, const QString &folder, QTextStream &out)
{
    QJsonArray photos;
    for (const QString &name : ZQTVINScanUtils::allPhotoNamesWithClaimId(claimId)) {
        const QFileInfo file(folder + QLatin1Char('/') + name);
        photos.append(QJsonObject{{"name", name}, {"path", file.filePath()}, {"bytes", file.size()}});
    }
    printJson(photos, out);
    return photos.isEmpty() ? Negative : Success;
}

int add(const Request &request, const QString &path, Streams io)
{
    const QString imageFile = request.operands.first();
    if (refusedAsSvg(imageFile, io))
        return Failure;
    const ZQTPlatform::Image image = ZQTPlatform::Image::imageWithContentsOfFile(imageFile);
    if (image.isNull()) {
        io.err << "zqt-vin: cannot read an image from " << imageFile << "\n";
        return Failure;
    }
    ZQTVINScanUtils::savePhotoWithClaimId(request.claimId, image, request.title, path);
    // The store does not report a failed write; a script needs to know that nothing was stored.
    const QFileInfo stored(path);
    const QSize size = QImageReader(path).size();
    if (!stored.isFile() || !size.isValid()) {
        io.err << "zqt-vin: could not write the photo " << path << ": " << writeFailure(path) << "\n";
        return Failure;
    }
    printJson(QJsonObject{{"path", path}, {"bytes", stored.size()}, {"width", size.width()}, {"height", size.height()}},
              io.out);
    return Success;
}

} // namespace

int runPhotos(const QStringList &args, Streams io)
{
    Request request;
    if (const std::optional<int> status = endEarly(args, parseRequest(args, request), io, kUsage))
        return *status;
    const bool listing = request.action == QLatin1String("list");
    const QString title = request.action == QLatin1String("add") ? request.title : request.operands.value(0);
    // The claim folder for a listing, else the photo's file; nil when a name is refused.
    const QString path = listing ? ZQTVINScanUtils::createClaimDirAsNeededWithClaimId(request.claimId)
                                 : ZQTVINScanUtils::createPhotoPathWithClaimId(request.claimId, title);
    if (path.isNull())
        return usageError(io, QStringLiteral("the claim id and the title must each be usable as one file name"), kUsage);
    if (listing)
        return list(request.claimId, path, io.out);
    if (request.action == QLatin1String("add"))
        return add(request, path, io);
    if (request.action == QLatin1String("path")) {
        const bool exists = QFileInfo(path).isFile();
        printJson(QJsonObject{{"path", path}, {"exists", exists}}, io.out);
        return exists ? Success : Negative;
    }
    const bool deleted = ZQTVINScanUtils::deletePhotoWithClaimId(request.claimId, title);
    printJson(QJsonObject{{"deleted", deleted}}, io.out);
    return deleted ? Success : Negative;
}

} // namespace ZqtVin
