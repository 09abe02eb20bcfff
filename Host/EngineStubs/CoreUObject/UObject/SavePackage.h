#pragma once

#include "CoreGlobals.h"
#include "CoreMinimal.h"
#include "Misc/OutputDeviceError.h"
#include "Misc/DateTime.h"
#include "UObject/ObjectMacros.h"

class FArchiveCookData;
class FSavePackageContext;
class ITargetPlatform;
class UObject;
struct FObjectSaveOverride;

struct FSavePackageArgs
{
	FArchiveCookData* ArchiveCookData = nullptr;
	EObjectFlags TopLevelFlags = RF_NoFlags;
	uint32 SaveFlags = SAVE_None;
	bool bForceByteSwapping = false;
	bool bWarnOfLongFilename = true;
	bool bSlowTask = true;
	FDateTime FinalTimeStamp;
	FOutputDevice* Error = GError;
	FSavePackageContext* SavePackageContext = nullptr;
	TMap<UObject*, FObjectSaveOverride>* InOutSaveOverrides = nullptr;
	bool IsCooking() const;
	const ITargetPlatform* GetTargetPlatform() const;
};
