#pragma once

#include "CoreMinimal.h"
#include "LevelEditorViewport.h"

class FViewport;

// The engine's bases (SAssetEditorViewport, IAssetViewport) are left out; the members are the
// engine's.
class SLevelViewport
{
public:
	virtual ~SLevelViewport();

	FLevelEditorViewportClient& GetLevelViewportClient();
	const FLevelEditorViewportClient& GetLevelViewportClient() const;
	virtual FViewport* GetActiveViewport();
};
