// editor_capture_viewport's work: frame the target actors in the active Level Editor viewport
// (or not), read its pixels, write them as a PNG under the project's saved folder and describe
// what was captured. Every check runs before the file is written; a failed capture writes nothing.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"

struct FDateTime;

struct FZorvekMCPBridgeCaptureRequest
{
	// Empty: the selected actors.
	FString ActorNameOrLabel;
	bool bFocus = true;
	// Never empty: the tool puts the default in.
	FString FilenamePrefix = TEXT("ZorvekViewport");
};

struct FZorvekMCPBridgeCaptureOutcome
{
	bool bCaptured = false;
	// The success result, or "captured" false with "error".
	TSharedPtr<FJsonObject> Payload;
};

namespace ZorvekMCPBridgeViewportCapture
{
	inline constexpr const TCHAR* DefaultFilenamePrefix = TEXT("ZorvekViewport");

	// "OrthoXY" ... "OrthoNegativeYZ" for the ELevelViewportType values 0 to 7, else "Unknown_<n>".
	FString GetViewportTypeName(int32 ViewportType);

	// <ProjectSavedDir>Screenshots/ZorvekMCPBridge.
	FString GetScreenshotDirectory();

	// "<Prefix>_<yyyymmdd>_<hhmmss>_<milliseconds>.png" in the given (local) time.
	FString MakeScreenshotFileName(const FString& Prefix, const FDateTime& Time);

	// The prefix becomes part of a file name in the screenshot folder, so it may hold neither a
	// path separator nor a character Windows refuses in names. Empty when it is fine, else why.
	FString ValidateFilenamePrefix(const FString& Prefix);

	// FBox += FBox: an invalid box takes the other, a valid one grows to hold it.
	void AddBoxToUnion(FZorvekMCPBridgeBox& Union, const FZorvekMCPBridgeBox& Box);

	FZorvekMCPBridgeCaptureOutcome Capture(IZorvekMCPBridgeWorld& World, const FZorvekMCPBridgeCaptureRequest& Request);
}
