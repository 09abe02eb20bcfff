// The simulated level viewport: FocusViewportOnBox as the editor computes it, orthographic
// views, a viewport without FViewport, and a render that shows what the camera frames.
#include "AssetTestSupport.h"
#include "SimulatedViewport.h"
#include "SimulatedWorld.h"
#include "SimulatedWorldPort.h"

using namespace ZorvekAssetTests;

namespace
{
	FSimulatedActor* FindByLabel(FSimulatedWorld& World, const FString& Label)
	{
		for (FSimulatedActor* Actor : World.GetAllLevelActors())
		{
			if (Actor->Label == Label)
			{
				return Actor;
			}
		}
		return nullptr;
	}

	// The pixels of the selection colour (orange: strong red, middling green, little blue).
	struct FOrangeArea
	{
		int32 Count = 0;
		int32 MinX = INT32_MAX;
		int32 MinY = INT32_MAX;
		int32 MaxX = -1;
		int32 MaxY = -1;
	};

	FOrangeArea FindSelectionOutline(const TArray<uint8>& Bgra, int32 Width, int32 Height)
	{
		FOrangeArea Area;
		for (int32 Y = 0; Y < Height; ++Y)
		{
			for (int32 X = 0; X < Width; ++X)
			{
				const int32 Index = (Y * Width + X) * 4;
				if (Bgra[Index + 2] == 243 && Bgra[Index + 1] == 156 && Bgra[Index] == 18)
				{
					++Area.Count;
					Area.MinX = FMath::Min(Area.MinX, X);
					Area.MinY = FMath::Min(Area.MinY, Y);
					Area.MaxX = FMath::Max(Area.MaxX, X);
					Area.MaxY = FMath::Max(Area.MaxY, Y);
				}
			}
		}
		return Area;
	}
}

TEST(SimulatedWorldViewport, FocusMovesBackAlongTheKeptRotationByTheFramingDistance)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedViewport& Viewport = Port->GetEditor().GetWorld().GetViewport();
	Viewport.SetSize(1280, 720);
	Viewport.SetPerspectiveView({-50.0, 20.0, 30.0}, {0.0, 0.0, 0.0});
	// unreal-behaviour-world-assets.md §3.2 worked example: a 100-unit cube at the origin,
	// |extent| 86.603 * 16/9 = 153.96 / tan 45 = 153.96 back along +X.
	Viewport.FocusViewportOnBox(FSimulatedBox({-50.0, -50.0, -50.0}, {50.0, 50.0, 50.0}), true);
	EXPECT_NEAR(Viewport.GetViewLocation().X, -153.96, 0.01);
	EXPECT_NEAR(Viewport.GetViewLocation().Y, 0.0, 1e-9);
	EXPECT_NEAR(Viewport.GetViewLocation().Z, 0.0, 1e-9);
	EXPECT_EQ(Viewport.GetViewRotation().Pitch, 0.0);

	// The rotation is kept: looking down 90 the camera rises above the box instead.
	Viewport.SetPerspectiveView({0.0, 0.0, 0.0}, {-90.0, 0.0, 0.0});
	Viewport.FocusViewportOnBox(FSimulatedBox({100.0, 100.0, 0.0}, {200.0, 200.0, 100.0}), true);
	EXPECT_NEAR(Viewport.GetViewLocation().X, 150.0, 1e-6);
	EXPECT_NEAR(Viewport.GetViewLocation().Z, 50.0 + 153.96, 0.01);
	EXPECT_EQ(Viewport.GetViewRotation().Pitch, -90.0);

	// A tiny box still frames at the minimum radius of 10.
	Viewport.SetPerspectiveView({0.0, 0.0, 0.0}, {0.0, 0.0, 0.0});
	Viewport.FocusViewportOnBox(FSimulatedBox({0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}), true);
	EXPECT_NEAR(Viewport.GetViewLocation().X, -10.0 * 1280.0 / 720.0, 1e-6);
}

TEST(SimulatedWorldViewport, FocusThatIsNotInstantArrivesOnTheNextTick)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = Port->GetEditor().GetWorld();
	FSimulatedViewport& Viewport = World.GetViewport();
	Viewport.SetPerspectiveView({-500.0, 0.0, 0.0}, {0.0, 0.0, 0.0});
	// §3.2: the transition animates; the view reads the old location in the same call.
	Viewport.FocusViewportOnBox(FSimulatedBox({-50.0, -50.0, -50.0}, {50.0, 50.0, 50.0}), false);
	EXPECT_EQ(Viewport.GetViewLocation().X, -500.0);
	World.Tick();
	EXPECT_NEAR(Viewport.GetViewLocation().X, -153.96, 0.01);
}

TEST(SimulatedWorldViewport, OrthographicViewsCentreOnTheBoxAndReportTheirOwnTransform)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedViewport& Viewport = Port->GetEditor().GetWorld().GetViewport();
	Viewport.SetViewportType(SimulatedViewportTypes::OrthoXY);
	Viewport.FocusViewportOnBox(FSimulatedBox({0.0, 0.0, 0.0}, {300.0, 400.0, 0.0}), true);
	// §3.2: the ortho location is the box centre and OrthoZoom 30 * radius.
	EXPECT_NEAR(Viewport.GetViewLocation().X, 150.0, 1e-9);
	EXPECT_NEAR(Viewport.GetViewLocation().Y, 200.0, 1e-9);
	EXPECT_NEAR(Viewport.GetOrthoZoom(), 30.0 * 250.0, 1e-6);
	const FZorvekMCPBridgeViewportInfo Info = Port->GetWorld().GetActiveViewport();
	EXPECT_EQ(Info.ViewportType, 0);
	EXPECT_FALSE(Info.bIsPerspective);
	EXPECT_NEAR(Info.ViewLocation.Y, 200.0, 1e-9);
}

TEST(SimulatedWorldViewport, AViewportWithoutFViewportNeitherMovesNorReads)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorldPort& WorldPort = static_cast<FSimulatedWorldPort&>(Port->GetWorld());
	FSimulatedViewport& Viewport = WorldPort.GetSimulatedWorld().GetViewport();
	Viewport.SetHasFViewport(false);
	const FSimulatedVector Before = Viewport.GetViewLocation();
	WorldPort.FocusActiveViewportOnBox({{0.0, 0.0, 0.0}, {10.0, 10.0, 10.0}, true});
	EXPECT_EQ(Viewport.GetViewLocation().X, Before.X);
	TArray<uint8> Pixels;
	int32 Width = 0;
	int32 Height = 0;
	EXPECT_FALSE(WorldPort.ReadActiveViewportPixels(Pixels, Width, Height));
	EXPECT_TRUE(Pixels.IsEmpty());
	const FZorvekMCPBridgeViewportInfo Info = WorldPort.GetActiveViewport();
	EXPECT_TRUE(Info.bHasViewport);
	EXPECT_FALSE(Info.bHasFViewport);
	Viewport.SetHasLevelViewport(false);
	EXPECT_FALSE(WorldPort.GetActiveViewport().bHasViewport);
}

TEST(SimulatedWorldViewport, TheRenderShowsAFocusedSelectionInsideTheFrame)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorldPort& WorldPort = static_cast<FSimulatedWorldPort&>(Port->GetWorld());
	FSimulatedWorld& World = WorldPort.GetSimulatedWorld();
	FSimulatedActor* Repro = FindByLabel(World, TEXT("ReproCylinder"));
	ASSERT_NE(Repro, nullptr);
	World.SetActorSelectionState(*Repro, true);
	World.GetViewport().SetSize(640, 360);
	// Looking away from the cylinder (it is behind the camera): no outline anywhere.
	World.GetViewport().SetPerspectiveView({0.0, 0.0, 300.0}, {0.0, 0.0, 0.0});
	World.GetViewport().Draw();
	TArray<uint8> Pixels;
	int32 Width = 0;
	int32 Height = 0;
	ASSERT_TRUE(WorldPort.ReadActiveViewportPixels(Pixels, Width, Height));
	ASSERT_EQ(Pixels.Num(), 640 * 360 * 4);
	EXPECT_EQ(FindSelectionOutline(Pixels, Width, Height).Count, 0);

	// Framed on its bounds, the outline sits around the centre of the frame.
	const FSimulatedBox Bounds = World.GetActorBounds(*Repro);
	WorldPort.FocusActiveViewportOnBox({{Bounds.Min.X, Bounds.Min.Y, Bounds.Min.Z}, {Bounds.Max.X, Bounds.Max.Y, Bounds.Max.Z}, true});
	ASSERT_TRUE(WorldPort.ReadActiveViewportPixels(Pixels, Width, Height));
	const FOrangeArea Outline = FindSelectionOutline(Pixels, Width, Height);
	EXPECT_GT(Outline.Count, 100);
	EXPECT_LT(Outline.MinX, 320);
	EXPECT_GT(Outline.MaxX, 320);
	EXPECT_LT(Outline.MinY, 180);
	EXPECT_GT(Outline.MaxY, 180);
	EXPECT_GT(Outline.MinX, 0);
	EXPECT_LT(Outline.MaxX, 639);

	// The PNG decodes to the same pixels at the viewport's size (alpha set opaque first, as the
	// read-back's alpha is no opacity, §3.4).
	for (int32 Index = 3; Index < Pixels.Num(); Index += 4)
	{
		Pixels[Index] = 255;
	}
	const TArray<uint8> Png = WorldPort.CompressBgraToPng(Width, Height, Pixels);
	ASSERT_FALSE(Png.IsEmpty());
	EXPECT_LT(Png.Num(), Pixels.Num() / 4);
	int32 DecodedWidth = 0;
	int32 DecodedHeight = 0;
	TArray<uint8> Rgba;
	ASSERT_TRUE(SimulatedDecodePng(Png, DecodedWidth, DecodedHeight, Rgba));
	EXPECT_EQ(DecodedWidth, 640);
	EXPECT_EQ(DecodedHeight, 360);
	for (int32 Index = 0; Index < Pixels.Num(); Index += 4)
	{
		ASSERT_EQ(Rgba[Index], Pixels[Index + 2]);
		ASSERT_EQ(Rgba[Index + 1], Pixels[Index + 1]);
		ASSERT_EQ(Rgba[Index + 2], Pixels[Index]);
		ASSERT_EQ(Rgba[Index + 3], 255);
	}
	EXPECT_TRUE(WorldPort.CompressBgraToPng(0, 0, TArray<uint8>()).IsEmpty());
}

TEST(SimulatedWorldViewport, LevelChangesRedrawOnTheNextTickAndOnlyThen)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorldPort& WorldPort = static_cast<FSimulatedWorldPort&>(Port->GetWorld());
	FSimulatedWorld& World = WorldPort.GetSimulatedWorld();
	World.GetViewport().SetSize(320, 180);
	World.GetViewport().SetRealtime(false);
	TArray<uint8> Before;
	int32 Width = 0;
	int32 Height = 0;
	ASSERT_TRUE(WorldPort.ReadActiveViewportPixels(Before, Width, Height));
	// Selecting invalidates the viewport; the pixels read before the tick are the old frame.
	FSimulatedActor* Floor = FindByLabel(World, TEXT("Floor"));
	WorldPort.SetActorSelectionState(FSimulatedEditorPort::ToHandle(Floor->Object), true);
	TArray<uint8> Stale;
	ASSERT_TRUE(WorldPort.ReadActiveViewportPixels(Stale, Width, Height));
	EXPECT_EQ(Stale, Before);
	World.Tick();
	TArray<uint8> After;
	ASSERT_TRUE(WorldPort.ReadActiveViewportPixels(After, Width, Height));
	EXPECT_NE(After, Before);
	EXPECT_GT(FindSelectionOutline(After, Width, Height).Count, 0);
}

TEST(SimulatedWorldViewport, PngOfVariedRowsDecodesExactlyAndACorruptChunkIsRefused)
{
	// Rows that favour different filters, long runs and noise.
	const int32 Width = 37;
	const int32 Height = 23;
	TArray<uint8> Bgra;
	for (int32 Y = 0; Y < Height; ++Y)
	{
		for (int32 X = 0; X < Width; ++X)
		{
			const uint8 Noise = (uint8)((X * 73 + Y * 151) ^ (X * Y));
			Bgra.Add(Y % 3 == 0 ? 40 : Noise);
			Bgra.Add((uint8)(Y * 10));
			Bgra.Add(Y % 2 == 0 ? (uint8)X : 200);
			Bgra.Add(255);
		}
	}
	const TArray<uint8> Png = SimulatedEncodePng(Width, Height, Bgra);
	int32 DecodedWidth = 0;
	int32 DecodedHeight = 0;
	TArray<uint8> Rgba;
	ASSERT_TRUE(SimulatedDecodePng(Png, DecodedWidth, DecodedHeight, Rgba));
	ASSERT_EQ(Rgba.Num(), Bgra.Num());
	for (int32 Index = 0; Index < Bgra.Num(); Index += 4)
	{
		ASSERT_EQ(Rgba[Index], Bgra[Index + 2]) << Index;
		ASSERT_EQ(Rgba[Index + 2], Bgra[Index]) << Index;
	}
	TArray<uint8> Corrupt = Png;
	Corrupt[Corrupt.Num() / 2] ^= 0x40;
	EXPECT_FALSE(SimulatedDecodePng(Corrupt, DecodedWidth, DecodedHeight, Rgba));
	// A size that does not match the pixels gives nothing.
	EXPECT_TRUE(SimulatedEncodePng(Width + 1, Height, Bgra).IsEmpty());
}
