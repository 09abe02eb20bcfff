#include "Tools/ZorvekMCPBridgeViewportCaptureTool.h"

#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "World/ZorvekMCPBridgeViewportCapture.h"

namespace
{
	FZorvekMCPBridgeCaptureRequest ReadCaptureRequest(const TSharedPtr<FJsonObject>& Arguments)
	{
		FZorvekMCPBridgeCaptureRequest Request;
		Request.ActorNameOrLabel = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("ActorNameOrLabel"), FString());
		Request.bFocus = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("Focus"), true);
		Request.FilenamePrefix = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("FilenamePrefix"), FString());
		if (Request.FilenamePrefix.IsEmpty())
		{
			Request.FilenamePrefix = ZorvekMCPBridgeViewportCapture::DefaultFilenamePrefix;
		}
		return Request;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeViewportCaptureTool::HandleCaptureViewport(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("editor_capture_viewport"));
	}
	const FZorvekMCPBridgeCaptureOutcome Outcome = ZorvekMCPBridgeViewportCapture::Capture(Context.EditorPort->GetWorld(), ReadCaptureRequest(Arguments));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Outcome.Payload, !Outcome.bCaptured);
}
