// The Level Editor's active viewport in the Unreal Editor: its size, type and camera, framing a
// box, reading its pixels and compressing them to PNG.
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Editor/Port/ZorvekMCPBridgeEngineWorldMath.h"

#include "Containers/ArrayView.h"
#include "EditorViewportClient.h"
#include "ImageUtils.h"
#include "LevelEditor.h"
#include "LevelEditorViewport.h"
#include "Math/Color.h"
#include "Math/IntPoint.h"
#include "Modules/ModuleManager.h"
#include "SLevelViewport.h"
#include "UnrealClient.h"

namespace
{
	// Four bytes per pixel, B, G, R, A: the memory order of FColor.
	constexpr int32 EngineViewportBytesPerPixel = 4;
	// The port hands the PNG over in a 32-bit array.
	constexpr int64 EngineViewportMaxPngBytes = 0x7fffffff;
}

FLevelEditorViewportClient* FZorvekMCPBridgeEngineWorld::GetActiveViewportClient()
{
	// GetModulePtr does not load the module: without a loaded level editor (commandlets,
	// unattended runs, start-up) there is no level viewport to find.
	FLevelEditorModule* LevelEditor = FModuleManager::GetModulePtr<FLevelEditorModule>(TEXT("LevelEditor"));
	if (!LevelEditor)
	{
		return nullptr;
	}
	// The viewport last focused in a multi-pane layout; asset editors' and PIE's are not asked.
	const TSharedPtr<SLevelViewport> LevelViewport = LevelEditor->GetFirstActiveLevelViewport();
	return LevelViewport.IsValid() ? &LevelViewport->GetLevelViewportClient() : nullptr;
}

FZorvekMCPBridgeViewportInfo FZorvekMCPBridgeEngineWorld::GetActiveViewport() const
{
	FZorvekMCPBridgeViewportInfo Info;
	const FLevelEditorViewportClient* Client = GetActiveViewportClient();
	Info.bHasViewport = Client != nullptr;
	if (!Client)
	{
		return Info;
	}
	Info.bHasFViewport = Client->Viewport != nullptr;
	if (Client->Viewport)
	{
		// A hidden viewport (background tab, minimised window) may report 0 x 0.
		const FIntPoint Size = Client->Viewport->GetSizeXY();
		Info.Width = Size.X;
		Info.Height = Size.Y;
	}
	// The effective type (an actor lock can change it), reported as its raw value.
	Info.ViewportType = static_cast<int32>(Client->GetViewportType());
	Info.bIsPerspective = Client->IsPerspective();
	// The perspective view transform in a perspective view, else the orthographic one.
	Info.ViewLocation = ZorvekMCPBridgeEngineWorldMath::FromEngine(Client->GetViewLocation());
	Info.ViewRotation = ZorvekMCPBridgeEngineWorldMath::FromEngine(Client->GetViewRotation());
	return Info;
}

void FZorvekMCPBridgeEngineWorld::FocusActiveViewportOnBox(const FZorvekMCPBridgeBox& Box)
{
	FLevelEditorViewportClient* Client = GetActiveViewportClient();
	if (!Client || !Client->Viewport)
	{
		return;
	}
	// Instant: the animated transition would finish on later ticks, and the camera read back and
	// the pixels read next in this call would still show the old view.
	Client->FocusViewportOnBox(ZorvekMCPBridgeEngineWorldMath::ToEngine(Box), true);
	Client->Invalidate();
	Client->Viewport->Draw();
}

bool FZorvekMCPBridgeEngineWorld::ReadActiveViewportPixels(TArray<uint8>& OutBgraPixels, int32& OutWidth, int32& OutHeight)
{
	OutBgraPixels.Reset();
	OutWidth = 0;
	OutHeight = 0;
	FLevelEditorViewportClient* Client = GetActiveViewportClient();
	if (!Client || !Client->Viewport)
	{
		return false;
	}
	FViewport* Viewport = Client->Viewport;
	const FIntPoint Size = Viewport->GetSizeXY();
	if (Size.X <= 0 || Size.Y <= 0)
	{
		return false;
	}
	// Default surface-read flags and the whole viewport; the read flushes rendering, so it runs
	// on the game thread only (as every port call does).
	TArray<FColor> Colors;
	if (!Viewport->ReadPixels(Colors) || Colors.Num() != Size.X * Size.Y)
	{
		return false;
	}
	OutBgraPixels.SetNumUninitialized(Colors.Num() * EngineViewportBytesPerPixel);
	for (int32 Index = 0; Index < Colors.Num(); ++Index)
	{
		const FColor& Color = Colors[Index];
		uint8* Pixel = OutBgraPixels.GetData() + Index * EngineViewportBytesPerPixel;
		Pixel[0] = Color.B;
		Pixel[1] = Color.G;
		Pixel[2] = Color.R;
		// The scene's alpha is not opacity (often 0): kept, the PNG would come out transparent.
		Pixel[3] = 255;
	}
	OutWidth = Size.X;
	OutHeight = Size.Y;
	return true;
}

TArray<uint8> FZorvekMCPBridgeEngineWorld::CompressBgraToPng(int32 Width, int32 Height, const TArray<uint8>& BgraPixels) const
{
	TArray<uint8> Png;
	if (Width <= 0 || Height <= 0 || BgraPixels.Num() != Width * Height * EngineViewportBytesPerPixel)
	{
		return Png;
	}
	TArray<FColor> Colors;
	Colors.Reserve(Width * Height);
	for (int32 Offset = 0; Offset < BgraPixels.Num(); Offset += EngineViewportBytesPerPixel)
	{
		Colors.Add(FColor(BgraPixels[Offset + 2], BgraPixels[Offset + 1], BgraPixels[Offset], BgraPixels[Offset + 3]));
	}
	// The engine's PNG writer works on 64-bit arrays; it leaves the output empty when it
	// produced nothing.
	TArray64<uint8> Compressed;
	FImageUtils::PNGCompressImageArray(Width, Height, Colors, Compressed);
	if (Compressed.Num() > 0 && Compressed.Num() <= EngineViewportMaxPngBytes)
	{
		Png.Append(Compressed.GetData(), static_cast<int32>(Compressed.Num()));
	}
	return Png;
}
