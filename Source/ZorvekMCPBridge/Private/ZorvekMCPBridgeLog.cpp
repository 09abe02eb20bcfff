#include "ZorvekMCPBridgeLog.h"

DEFINE_LOG_CATEGORY(LogZorvekMCPBridge);
