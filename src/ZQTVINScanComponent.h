// Everything a host application needs: the capture screen and its delegate, the adjuster record,
// the VIN check and the configuration lookup.
#pragma once

#include "Model/ZQTVINScanAdjuster.h"
#include "Model/ZQTVINScanComponentConstants.h"
#include "Utils/VINUtility.h"
#include "ViewControllers/VinScannerVCDelegate.h"
#include "ViewControllers/ZQTVINCaptureVC.h"
