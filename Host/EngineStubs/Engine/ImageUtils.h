#pragma once

#include "CoreMinimal.h"
#include "Containers/ArrayView.h"
#include "Math/Color.h"

// The engine exports the class (ENGINE_API); the stub omits the export macro.
class FImageUtils
{
public:
	static void PNGCompressImageArray(int32 ImageWidth, int32 ImageHeight, const TArrayView64<const FColor>& SrcData, TArray64<uint8>& DstData);
	static void ThumbnailCompressImageArray(int32 ImageWidth, int32 ImageHeight, const TArray<FColor>& SrcData, TArray<uint8>& DstData);
};
