#include "Model/ZQTThumbnailPreviewItem.h"

using ZQTPlatform::Image;

QString ZQTThumbnailPreviewItem::title() const { return m_title; }
void ZQTThumbnailPreviewItem::setTitle(const QString &title) { m_title = title; }
QString ZQTThumbnailPreviewItem::displayTitle() const { return m_displayTitle; }
void ZQTThumbnailPreviewItem::setDisplayTitle(const QString &displayTitle) { m_displayTitle = displayTitle; }
Image ZQTThumbnailPreviewItem::thumbnailImage() const { return m_thumbnailImage; }
void ZQTThumbnailPreviewItem::setThumbnailImage(const Image &thumbnailImage) { m_thumbnailImage = thumbnailImage; }
QString ZQTThumbnailPreviewItem::thumbnailImageName() const { return m_thumbnailImageName; }
void ZQTThumbnailPreviewItem::setThumbnailImageName(const QString &thumbnailImageName) { m_thumbnailImageName = thumbnailImageName; }
QString ZQTThumbnailPreviewItem::thumbnailImagePath() const { return m_thumbnailImagePath; }
void ZQTThumbnailPreviewItem::setThumbnailImagePath(const QString &thumbnailImagePath) { m_thumbnailImagePath = thumbnailImagePath; }
QString ZQTThumbnailPreviewItem::overlayImageName() const { return m_overlayImageName; }
void ZQTThumbnailPreviewItem::setOverlayImageName(const QString &overlayImageName) { m_overlayImageName = overlayImageName; }
QString ZQTThumbnailPreviewItem::overlayImagePath() const { return m_overlayImagePath; }
void ZQTThumbnailPreviewItem::setOverlayImagePath(const QString &overlayImagePath) { m_overlayImagePath = overlayImagePath; }
QString ZQTThumbnailPreviewItem::overlayHeader() const { return m_overlayHeader; }
void ZQTThumbnailPreviewItem::setOverlayHeader(const QString &overlayHeader) { m_overlayHeader = overlayHeader; }
QString ZQTThumbnailPreviewItem::overlayTitle() const { return m_overlayTitle; }
void ZQTThumbnailPreviewItem::setOverlayTitle(const QString &overlayTitle) { m_overlayTitle = overlayTitle; }
QString ZQTThumbnailPreviewItem::overlayDesc() const { return m_overlayDesc; }
void ZQTThumbnailPreviewItem::setOverlayDesc(const QString &overlayDesc) { m_overlayDesc = overlayDesc; }
