#pragma once

#include "CoreMinimal.h"
#include "Editor/UnrealEdTypes.h"
#include "Math/Box.h"
#include "Math/IntPoint.h"
#include "Math/Rotator.h"
#include "Math/Vector.h"

class FViewport;
class UWorld;

// The engine's bases (FCommonViewportClient, FViewElementDrawer, FGCObject) are left out; the
// members are the engine's.
class FEditorViewportClient
{
public:
	virtual ~FEditorViewportClient();

	// Public members.
	FViewport* Viewport;
	ELevelViewportType ViewportType;
	float ViewFOV;
	float FOVAngle;

	const FVector& GetViewLocation() const;
	void SetViewLocation(const FVector& NewLocation);
	const FRotator& GetViewRotation() const;
	void SetViewRotation(const FRotator& NewRotation);
	void SetLookAtLocation(const FVector& LookAt, bool bRecalculateView = false);
	virtual ELevelViewportType GetViewportType() const;
	virtual void SetViewportType(ELevelViewportType InViewportType);
	bool IsPerspective() const;
	virtual bool IsOrtho() const;
	float GetOrthoZoom() const;
	void SetOrthoZoom(float InOrthoZoom);
	void FocusViewportOnBox(const FBox& BoundingBox, bool bInstant = false);
	void CenterViewportAtPoint(const FVector& NewLookAt, bool bInstant = false);
	void Invalidate(bool bInvalidateChildViews = true, bool bInvalidateHitProxies = true);
	void SetRealtime(bool bInRealtime);
	bool IsRealtime() const;
	virtual UWorld* GetWorld() const;
	void GetViewportDimensions(FIntPoint& OutOrigin, FIntPoint& OutSize);
};
