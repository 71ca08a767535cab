// Export macro of the ZQTVINScanComponent library.
#pragma once

#include <QtCore/qglobal.h>

#if defined(ZQT_BUILDING_LIBRARY)
#define ZQT_EXPORT Q_DECL_EXPORT
#else
#define ZQT_EXPORT Q_DECL_IMPORT
#endif
