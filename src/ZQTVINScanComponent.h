// Everything a host application needs: the capture screen and its delegate, the photo slot and
// photo records, the adjuster record, the VIN check, the configuration lookup, the claim photo
// store and the per-claim settings.
#pragma once

#include "Model/ZQTThumbnailPreviewItem.h"
#include "Model/ZQTVINPhotoCaptureEntity.h"
#include "Model/ZQTVINPhotoCaptureItem.h"
#include "Model/ZQTVINScanAdjuster.h"
#include "Model/ZQTVINScanComponentConstants.h"
#include "Utils/VINUtility.h"
#include "Utils/ZQTUserDefaults/ZQTUserDefaults.h"
#include "Utils/ZQTVINScanUtils.h"
#include "ViewControllers/VinScannerVCDelegate.h"
#include "ViewControllers/ZQTVINCaptureVC.h"
