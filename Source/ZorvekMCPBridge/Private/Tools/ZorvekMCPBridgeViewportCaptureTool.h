#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// editor_capture_viewport: frames the target actors, captures the active Level Editor viewport to
// a PNG under <ProjectSavedDir>Screenshots/ZorvekMCPBridge and reports the camera, the target
// bounds and the targets' readback.
namespace ZorvekMCPBridgeViewportCaptureTool
{
	TSharedPtr<FJsonObject> HandleCaptureViewport(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
