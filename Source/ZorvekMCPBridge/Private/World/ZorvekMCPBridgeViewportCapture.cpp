#include "World/ZorvekMCPBridgeViewportCapture.h"

#include "Dom/JsonValue.h"
#include "HAL/FileManager.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

namespace
{
	FZorvekMCPBridgeCaptureOutcome FailCapture(const FString& Message)
	{
		FZorvekMCPBridgeCaptureOutcome Outcome;
		Outcome.Payload = MakeShared<FJsonObject>();
		Outcome.Payload->SetBoolField(TEXT("captured"), false);
		Outcome.Payload->SetStringField(TEXT("error"), Message);
		return Outcome;
	}

	// The actors to frame: the named one, else the selection, each read whole. False, with the
	// message, when there is none.
	bool CollectCaptureTargets(const IZorvekMCPBridgeWorld& World, const FString& ActorNameOrLabel, TArray<FZorvekMCPBridgeActorSnapshot>& OutTargets, FString& OutError)
	{
		TArray<FZorvekMCPBridgeObjectHandle> Handles;
		if (!ActorNameOrLabel.IsEmpty())
		{
			FZorvekMCPBridgeActorEntry Entry;
			if (!ZorvekMCPBridgeActorReadback::FindActor(World, ActorNameOrLabel, Entry))
			{
				OutError = ZorvekMCPBridgeActorReadback::MakeActorNotFoundMessage(ActorNameOrLabel);
				return false;
			}
			Handles.Add(Entry.Actor);
		}
		else
		{
			Handles = World.GetSelectedLevelActors();
		}
		for (const FZorvekMCPBridgeObjectHandle& Handle : Handles)
		{
			FZorvekMCPBridgeActorSnapshot Snapshot;
			if (World.ReadActor(Handle, Snapshot))
			{
				OutTargets.Add(MoveTemp(Snapshot));
			}
		}
		if (OutTargets.IsEmpty())
		{
			OutError = ActorNameOrLabel.IsEmpty() ? FString(TEXT("No selected editor actors to capture.")) : ZorvekMCPBridgeActorReadback::MakeActorNotFoundMessage(ActorNameOrLabel);
			return false;
		}
		return true;
	}
}

FString ZorvekMCPBridgeViewportCapture::GetViewportTypeName(int32 ViewportType)
{
	static const TCHAR* const Names[] = {
		TEXT("OrthoXY"), TEXT("OrthoXZ"), TEXT("OrthoYZ"), TEXT("Perspective"),
		TEXT("OrthoFreelook"), TEXT("OrthoNegativeXY"), TEXT("OrthoNegativeXZ"), TEXT("OrthoNegativeYZ"),
	};
	if (ViewportType >= 0 && ViewportType < (int32)UE_ARRAY_COUNT(Names))
	{
		return Names[ViewportType];
	}
	return FString::Printf(TEXT("Unknown_%d"), ViewportType);
}

FString ZorvekMCPBridgeViewportCapture::GetScreenshotDirectory()
{
	return FPaths::Combine(FPaths::ProjectSavedDir(), TEXT("Screenshots"), TEXT("ZorvekMCPBridge"));
}

FString ZorvekMCPBridgeViewportCapture::MakeScreenshotFileName(const FString& Prefix, const FDateTime& Time)
{
	// %s is the millisecond in the engine's format: two captures in one millisecond share a name.
	return FString::Printf(TEXT("%s_%s.png"), *Prefix, *Time.ToString(TEXT("%Y%m%d_%H%M%S_%s")));
}

FString ZorvekMCPBridgeViewportCapture::ValidateFilenamePrefix(const FString& Prefix)
{
	for (const TCHAR Character : Prefix)
	{
		int32 Index = INDEX_NONE;
		if (Character < 32 || FString(TEXT("\\/:*?\"<>|")).FindChar(Character, Index))
		{
			return TEXT("FilenamePrefix must be part of a file name: no path separators, no control characters and none of : * ? \" < > |.");
		}
	}
	if (Prefix == TEXT(".") || Prefix == TEXT(".."))
	{
		return TEXT("FilenamePrefix must be part of a file name: no path separators, no control characters and none of : * ? \" < > |.");
	}
	return FString();
}

void ZorvekMCPBridgeViewportCapture::AddBoxToUnion(FZorvekMCPBridgeBox& Union, const FZorvekMCPBridgeBox& Box)
{
	if (!Box.bIsValid)
	{
		return;
	}
	if (!Union.bIsValid)
	{
		Union = Box;
		return;
	}
	Union.Min.X = FMath::Min(Union.Min.X, Box.Min.X);
	Union.Min.Y = FMath::Min(Union.Min.Y, Box.Min.Y);
	Union.Min.Z = FMath::Min(Union.Min.Z, Box.Min.Z);
	Union.Max.X = FMath::Max(Union.Max.X, Box.Max.X);
	Union.Max.Y = FMath::Max(Union.Max.Y, Box.Max.Y);
	Union.Max.Z = FMath::Max(Union.Max.Z, Box.Max.Z);
}

FZorvekMCPBridgeCaptureOutcome ZorvekMCPBridgeViewportCapture::Capture(IZorvekMCPBridgeWorld& World, const FZorvekMCPBridgeCaptureRequest& Request)
{
	const FString PrefixProblem = ValidateFilenamePrefix(Request.FilenamePrefix);
	if (!PrefixProblem.IsEmpty())
	{
		return FailCapture(PrefixProblem);
	}
	if (!World.IsActorSubsystemAvailable())
	{
		return FailCapture(TEXT("Editor actor subsystem is unavailable."));
	}
	TArray<FZorvekMCPBridgeActorSnapshot> Targets;
	FString TargetError;
	if (!CollectCaptureTargets(World, Request.ActorNameOrLabel, Targets, TargetError))
	{
		return FailCapture(TargetError);
	}
	const FZorvekMCPBridgeViewportInfo Viewport = World.GetActiveViewport();
	if (!Viewport.bHasViewport)
	{
		return FailCapture(TEXT("No active Level Editor viewport is available for capture."));
	}
	if (!Viewport.bHasFViewport)
	{
		return FailCapture(TEXT("Active Level Editor viewport has no FViewport."));
	}

	FZorvekMCPBridgeBox TargetBounds;
	for (const FZorvekMCPBridgeActorSnapshot& Target : Targets)
	{
		AddBoxToUnion(TargetBounds, ZorvekMCPBridgeActorReadback::GetActorBoundsBox(Target));
	}
	if (Request.bFocus)
	{
		// Instant, then redrawn, so the pixels read next show the framed scene.
		World.FocusActiveViewportOnBox(TargetBounds);
	}

	TArray<uint8> Pixels;
	int32 Width = 0;
	int32 Height = 0;
	if (!World.ReadActiveViewportPixels(Pixels, Width, Height) || Width <= 0 || Height <= 0 || Pixels.Num() != Width * Height * 4)
	{
		return FailCapture(TEXT("Could not read pixels from active Level Editor viewport."));
	}
	// The alpha a viewport read returns is no opacity (often 0); written as it is, the PNG
	// would show nothing.
	for (int32 Index = 3; Index < Pixels.Num(); Index += 4)
	{
		Pixels[Index] = 255;
	}
	const TArray<uint8> Png = World.CompressBgraToPng(Width, Height, Pixels);
	if (Png.IsEmpty())
	{
		return FailCapture(TEXT("Could not compress viewport pixels to PNG."));
	}

	const FString Directory = GetScreenshotDirectory();
	IFileManager& Files = IFileManager::Get();
	Files.MakeDirectory(*Directory, true);
	const FString ScreenshotPath = FPaths::ConvertRelativePathToFull(FPaths::Combine(Directory, MakeScreenshotFileName(Request.FilenamePrefix, FDateTime::Now())));
	const bool bExistedBefore = Files.FileExists(*ScreenshotPath);
	if (!FFileHelper::SaveArrayToFile(Png, *ScreenshotPath))
	{
		// A half-written new file is no screenshot.
		if (!bExistedBefore && Files.FileExists(*ScreenshotPath))
		{
			Files.Delete(*ScreenshotPath);
		}
		return FailCapture(FString::Printf(TEXT("Could not save screenshot to '%s'."), *ScreenshotPath));
	}

	// The camera as it is now: a focus has moved it.
	const FZorvekMCPBridgeViewportInfo Camera = World.GetActiveViewport();
	TSharedPtr<FJsonObject> CameraJson = MakeShared<FJsonObject>();
	CameraJson->SetObjectField(TEXT("location"), ZorvekMCPBridgeActorReadback::MakeVectorJson(Camera.ViewLocation));
	CameraJson->SetObjectField(TEXT("rotation"), ZorvekMCPBridgeActorReadback::MakeRotatorJson(Camera.ViewRotation));
	TArray<TSharedPtr<FJsonValue>> Actors;
	for (const FZorvekMCPBridgeActorSnapshot& Target : Targets)
	{
		Actors.Add(MakeShared<FJsonValueObject>(ZorvekMCPBridgeActorReadback::MakeActorReadback(Target, true)));
	}

	FZorvekMCPBridgeCaptureOutcome Outcome;
	Outcome.bCaptured = true;
	Outcome.Payload = MakeShared<FJsonObject>();
	Outcome.Payload->SetBoolField(TEXT("captured"), true);
	Outcome.Payload->SetBoolField(TEXT("focused"), Request.bFocus);
	Outcome.Payload->SetStringField(TEXT("screenshot_path"), ScreenshotPath);
	Outcome.Payload->SetNumberField(TEXT("width"), Width);
	Outcome.Payload->SetNumberField(TEXT("height"), Height);
	Outcome.Payload->SetNumberField(TEXT("byte_count"), Png.Num());
	Outcome.Payload->SetObjectField(TEXT("camera"), CameraJson);
	Outcome.Payload->SetStringField(TEXT("viewport_type"), GetViewportTypeName(Camera.ViewportType));
	Outcome.Payload->SetObjectField(TEXT("target_bounds"), ZorvekMCPBridgeActorReadback::MakeBoundsJson(TargetBounds));
	Outcome.Payload->SetArrayField(TEXT("actors"), Actors);
	Outcome.Payload->SetNumberField(TEXT("actor_count"), Actors.Num());
	return Outcome;
}
