#pragma once

#include "CoreMinimal.h"
#include "Math/Color.h"
#include "Math/IntPoint.h"
#include "Math/IntRect.h"
#include "RHITypes.h"

class FViewportClient;

// The engine exports these members (ENGINE_API); the stub omits the export macro.
class FRenderTarget
{
public:
	virtual ~FRenderTarget();
	virtual FIntPoint GetSizeXY() const = 0;
	virtual bool ReadPixels(TArray<FColor>& OutImageData, FReadSurfaceDataFlags InFlags = FReadSurfaceDataFlags(RCM_UNorm, CubeFace_MAX), FIntRect InSrcRect = FIntRect(0, 0, 0, 0));
	virtual bool ReadLinearColorPixels(TArray<FLinearColor>& OutImageData, FReadSurfaceDataFlags InFlags = FReadSurfaceDataFlags(RCM_MinMax, CubeFace_MAX), FIntRect InSrcRect = FIntRect(0, 0, 0, 0));
};

class FViewport : public FRenderTarget
{
public:
	void Draw(bool bShouldPresent = true);
	void Invalidate();
	void InvalidateDisplay();
	virtual FIntPoint GetSizeXY() const override;
	FViewportClient* GetClient() const;
	bool IsPlayInEditorViewport() const;
	FName GetViewportType() const;
};
