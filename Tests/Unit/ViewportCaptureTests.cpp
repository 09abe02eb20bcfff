// editor_capture_viewport against the sample level: which actors it frames, the order of its
// checks (nothing touched or written before they pass), the focus arithmetic of the editor, and
// the PNG itself, read back by a decoder that shares nothing with the encoder.
#include "AISetupTestSupport.h"
#include "AssetTestSupport.h"
#include "Misc/DateTime.h"
#include "Misc/Paths.h"
#include "PngTestReader.h"
#include "SimulatedViewport.h"
#include "SimulatedWorld.h"
#include "World/ZorvekMCPBridgeActorReadback.h"
#include "World/ZorvekMCPBridgeViewportCapture.h"
#include "ZorvekTestSupport.h"

#include <cmath>
#include <fstream>
#include <regex>

using namespace ZorvekAssetTests;

namespace
{
	class ViewportCaptureTest : public ::testing::Test
	{
	protected:
		ViewportCaptureTest()
			: Port(LoadSampleProject())
			, Runner(Port)
		{
			FPaths::SetProjectDirForHost(Folder.PathText("Project") + TEXT("/"));
			// Small frames keep the software render quick.
			Viewport().SetSize(320, 180);
			Port->GetWorld().SelectNothing();
		}

		~ViewportCaptureTest() override
		{
			FPaths::SetProjectDirForHost(FString());
		}

		FSimulatedViewport& Viewport() const { return Port->GetEditor().GetWorld().GetViewport(); }

		TSharedPtr<FJsonObject> Capture(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			return Runner.Call(TEXT("editor_capture_viewport"), Arguments(Fields));
		}

		void Select(const TCHAR* NameOrLabel) const
		{
			FZorvekMCPBridgeActorEntry Entry;
			ASSERT_TRUE(ZorvekMCPBridgeActorReadback::FindActor(Port->GetWorld(), NameOrLabel, Entry)) << S(NameOrLabel);
			Port->GetWorld().SetActorSelectionState(Entry.Actor, true);
		}

		std::filesystem::path ScreenshotFolder() const { return Folder.Path("Project/Saved/Screenshots/ZorvekMCPBridge"); }

		std::vector<std::string> ScreenshotFiles() const
		{
			std::vector<std::string> Names;
			std::error_code Error;
			for (const auto& Entry : std::filesystem::directory_iterator(ScreenshotFolder(), Error))
			{
				Names.push_back(Entry.path().filename().string());
			}
			return Names;
		}

		// A failed capture: "captured" false and the message, marked as an error.
		static std::string ExpectFailure(const TSharedPtr<FJsonObject>& Result)
		{
			EXPECT_TRUE(FToolRunner::IsError(Result));
			const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
			EXPECT_EQ(ToStd(JsonKeysOf(Payload)), (std::vector<std::string>{"captured", "error"}));
			EXPECT_FALSE(Payload->GetBoolField(TEXT("captured")));
			return S(Payload->GetStringField(TEXT("error")));
		}

		static ZorvekPngTestReader::FImage ReadPng(const TSharedPtr<FJsonObject>& Payload)
		{
			const std::string Path = S(Payload->GetStringField(TEXT("screenshot_path")));
			std::ifstream File(Path, std::ios::binary);
			const std::vector<uint8_t> Bytes((std::istreambuf_iterator<char>(File)), std::istreambuf_iterator<char>());
			EXPECT_EQ((double)Bytes.size(), Payload->GetNumberField(TEXT("byte_count")));
			ZorvekPngTestReader::FImage Image;
			std::string Error;
			EXPECT_TRUE(ZorvekPngTestReader::Decode(Bytes, Image, Error)) << Error;
			return Image;
		}

		// Pixels of the host render's selection outline (the editor's orange) within the middle
		// half of the image.
		static int CountSelectionPixelsNearTheCentre(const ZorvekPngTestReader::FImage& Image)
		{
			int Count = 0;
			for (int Y = Image.Height / 4; Y < Image.Height * 3 / 4; ++Y)
			{
				for (int X = Image.Width / 4; X < Image.Width * 3 / 4; ++X)
				{
					const uint8_t* Pixel = Image.At(X, Y);
					Count += (std::abs(Pixel[0] - 243) < 12 && std::abs(Pixel[1] - 156) < 12 && std::abs(Pixel[2] - 18) < 12) ? 1 : 0;
				}
			}
			return Count;
		}

		static FZorvekMCPBridgeVector VectorOf(const TSharedPtr<FJsonObject>& Json)
		{
			return {Json->GetNumberField(TEXT("x")), Json->GetNumberField(TEXT("y")), Json->GetNumberField(TEXT("z"))};
		}

		FTemporaryFolder Folder;
		TSharedPtr<FSimulatedEditorPort> Port;
		FToolRunner Runner;
	};

	// Condensed JSON as exact text (FString compares ignoring case).
	std::string JsonText(const TSharedPtr<FJsonObject>& Object)
	{
		return S(ToCondensedJson(Object));
	}

	TSharedPtr<FJsonObject> ObjectAt(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key)
	{
		return Object->GetObjectField(Key);
	}
}

// Checks in their order; nothing moved, drawn or written on a failure.

TEST_F(ViewportCaptureTest, WithNothingSelectedAndNoNameItFailsBeforeTheViewportIsTouched)
{
	Viewport().Draw();
	const int32 Draws = Viewport().GetDrawCount();
	const FSimulatedVector Camera = Viewport().GetViewLocation();

	EXPECT_EQ(ExpectFailure(Capture({})), "No selected editor actors to capture.");
	EXPECT_EQ(ExpectFailure(Capture({{TEXT("ActorNameOrLabel"), Text(TEXT(" Nope "))}})), "No editor actor found for ' Nope '.");
	// A prefix that would leave the screenshot folder is refused first of all.
	Select(TEXT("Floor"));
	EXPECT_EQ(ExpectFailure(Capture({{TEXT("FilenamePrefix"), Text(TEXT("../../Escaped"))}})),
		"FilenamePrefix must be part of a file name: no path separators, no control characters and none of : * ? \" < > |.");
	// Even without any viewport the target checks come first.
	Port->GetWorld().SelectNothing();
	Viewport().SetHasLevelViewport(false);
	EXPECT_EQ(ExpectFailure(Capture({})), "No selected editor actors to capture.");

	EXPECT_EQ(Viewport().GetDrawCount(), Draws);
	EXPECT_EQ(Viewport().GetViewLocation().X, Camera.X);
	EXPECT_FALSE(Viewport().IsTransitionPending());
	EXPECT_FALSE(std::filesystem::exists(Folder.Path("Project/Saved")));
}

TEST_F(ViewportCaptureTest, AMissingViewportOrFViewportIsReportedAndNothingIsWritten)
{
	Select(TEXT("Floor"));
	Viewport().SetHasLevelViewport(false);
	EXPECT_EQ(ExpectFailure(Capture({})), "No active Level Editor viewport is available for capture.");
	Viewport().SetHasLevelViewport(true);
	Viewport().SetHasFViewport(false);
	EXPECT_EQ(ExpectFailure(Capture({})), "Active Level Editor viewport has no FViewport.");
	EXPECT_TRUE(ScreenshotFiles().empty());

	EXPECT_EQ(ExpectFailure(Runner.Call(TEXT("editor_capture_viewport"), MakeShared<FJsonObject>())), "Active Level Editor viewport has no FViewport.");
	Port->GetSimulatedWorld().SetActorSubsystemAvailable(false);
	EXPECT_EQ(ExpectFailure(Capture({})), "Editor actor subsystem is unavailable.");
}

TEST_F(ViewportCaptureTest, AScreenshotThatCannotBeSavedNamesItsFullPathAndLeavesNoFile)
{
	// A file where the screenshot folder should be: the folder cannot be made nor written into.
	Folder.WriteBytes("Project/Saved/Screenshots/ZorvekMCPBridge", "in the way");
	const std::string Message = ExpectFailure(Capture({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}}));
	const std::string Expected = "Could not save screenshot to '" + ScreenshotFolder().string() + "/ZorvekViewport_";
	EXPECT_EQ(Message.substr(0, Expected.size()), Expected);
	EXPECT_TRUE(std::regex_match(Message.substr(Expected.size()), std::regex(R"(\d{8}_\d{6}_\d{3}\.png'\.)"))) << Message;
	EXPECT_TRUE(std::filesystem::is_regular_file(ScreenshotFolder()));
}

// Successful captures.

TEST_F(ViewportCaptureTest, WithoutFocusTheCameraStaysAndTheTargetBoundsAreStillReported)
{
	Viewport().SetPerspectiveView({-900.0, 250.0, 400.0}, {-15.0, 10.0, 0.0});
	Viewport().Draw();
	const int32 Draws = Viewport().GetDrawCount();

	const TSharedPtr<FJsonObject> Result = Capture({{TEXT("ActorNameOrLabel"), Text(TEXT("reprocylinder"))}, {TEXT("Focus"), Text(TEXT("false"))}, {TEXT("FilenamePrefix"), Text(TEXT(""))}});
	ASSERT_FALSE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	EXPECT_EQ(ToStd(JsonKeysOf(Payload)), (std::vector<std::string>{"captured", "focused", "screenshot_path", "width", "height", "byte_count", "camera", "viewport_type",
		"target_bounds", "actors", "actor_count"}));
	EXPECT_TRUE(Payload->GetBoolField(TEXT("captured")));
	EXPECT_FALSE(Payload->GetBoolField(TEXT("focused")));
	// The viewport as last drawn: neither moved nor redrawn.
	EXPECT_EQ(Viewport().GetDrawCount(), Draws);
	const TSharedPtr<FJsonObject> Camera = ObjectAt(Payload, TEXT("camera"));
	EXPECT_EQ(JsonText(ObjectAt(Camera, TEXT("location"))), "{\"x\":-900,\"y\":250,\"z\":400}");
	EXPECT_EQ(JsonText(ObjectAt(Camera, TEXT("rotation"))), "{\"pitch\":-15,\"yaw\":10,\"roll\":0}");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("viewport_type"))), "Perspective");

	const TArray<TSharedPtr<FJsonValue>> Actors = Payload->GetArrayField(TEXT("actors"));
	ASSERT_EQ(Actors.Num(), 1);
	EXPECT_EQ(Payload->GetNumberField(TEXT("actor_count")), 1);
	EXPECT_EQ(S(Actors[0]->AsObject()->GetStringField(TEXT("label"))), "ReproCylinder");
	EXPECT_TRUE(Actors[0]->AsObject()->GetBoolField(TEXT("selected")));
	EXPECT_EQ(JsonText(ObjectAt(Payload, TEXT("target_bounds"))), JsonText(ObjectAt(Actors[0]->AsObject(), TEXT("bounds"))));

	// An empty prefix takes the default; the file sits in the project's screenshot folder.
	const std::filesystem::path Path(S(Payload->GetStringField(TEXT("screenshot_path"))));
	EXPECT_TRUE(Path.is_absolute());
	EXPECT_EQ(Path.parent_path(), ScreenshotFolder());
	EXPECT_TRUE(std::regex_match(Path.filename().string(), std::regex(R"(ZorvekViewport_\d{8}_\d{6}_\d{3}\.png)"))) << Path;
	EXPECT_EQ(ScreenshotFiles(), std::vector<std::string>{Path.filename().string()});

	const ZorvekPngTestReader::FImage Image = ReadPng(Payload);
	EXPECT_EQ(Image.Width, 320);
	EXPECT_EQ(Image.Height, 180);
	EXPECT_EQ(Payload->GetNumberField(TEXT("width")), 320);
	EXPECT_EQ(Payload->GetNumberField(TEXT("height")), 180);
	// unreal-behaviour-world-assets.md §3.4: the read-back alpha is no opacity; the PNG is opaque.
	for (size_t Pixel = 3; Pixel < Image.Rgba.size(); Pixel += 4 * 97)
	{
		ASSERT_EQ(Image.Rgba[Pixel], 255);
	}
}

TEST_F(ViewportCaptureTest, FocusFramesTheSelectionAsTheEditorDoesAndTheImageShowsIt)
{
	// Looking away from the cylinder: it is not in the frame before the focus.
	Viewport().SetPerspectiveView({-600.0, 4000.0, 300.0}, {0.0, 0.0, 0.0});
	Select(TEXT("ReproCylinder"));
	const TSharedPtr<FJsonObject> Unfocused = FToolRunner::Payload(Capture({{TEXT("Focus"), MakeShared<FJsonValueBoolean>(false)}, {TEXT("FilenamePrefix"), Text(TEXT("Before"))}}));
	ASSERT_TRUE(Unfocused.IsValid());
	EXPECT_EQ(CountSelectionPixelsNearTheCentre(ReadPng(Unfocused)), 0);

	const TSharedPtr<FJsonObject> Result = Capture({{TEXT("FilenamePrefix"), Text(TEXT("Tree check"))}});
	ASSERT_FALSE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	EXPECT_TRUE(Payload->GetBoolField(TEXT("focused")));
	EXPECT_EQ(std::filesystem::path(S(Payload->GetStringField(TEXT("screenshot_path")))).filename().string().rfind("Tree check_", 0), 0u);

	// unreal-behaviour-world-assets.md §3.2: the rotation is kept and the camera backs off from
	// the box centre by |extent| * aspect / tan(FOV / 2) (FOV 90), instantly.
	const TSharedPtr<FJsonObject> Bounds = ObjectAt(Payload, TEXT("target_bounds"));
	const FZorvekMCPBridgeVector Centre = VectorOf(ObjectAt(Bounds, TEXT("center")));
	const FZorvekMCPBridgeVector Extent = VectorOf(ObjectAt(Bounds, TEXT("extent")));
	const double Distance = std::sqrt(Extent.X * Extent.X + Extent.Y * Extent.Y + Extent.Z * Extent.Z) * 320.0 / 180.0;
	const TSharedPtr<FJsonObject> Camera = ObjectAt(Payload, TEXT("camera"));
	const FZorvekMCPBridgeVector Location = VectorOf(ObjectAt(Camera, TEXT("location")));
	EXPECT_NEAR(Location.X, Centre.X - Distance, 0.01);
	EXPECT_NEAR(Location.Y, Centre.Y, 0.01);
	EXPECT_NEAR(Location.Z, Centre.Z, 0.01);
	EXPECT_EQ(JsonText(ObjectAt(Camera, TEXT("rotation"))), "{\"pitch\":0,\"yaw\":0,\"roll\":0}");
	EXPECT_FALSE(Viewport().IsTransitionPending());

	const ZorvekPngTestReader::FImage Image = ReadPng(Payload);
	EXPECT_GT(CountSelectionPixelsNearTheCentre(Image), 20);
	EXPECT_EQ(ScreenshotFiles().size(), 2u);
}

TEST_F(ViewportCaptureTest, SeveralSelectedActorsAreFramedByTheUnionOfTheirBounds)
{
	Select(TEXT("VisualOnlySphere"));
	Select(TEXT("ReproCylinder"));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Capture({{TEXT("Focus"), Text(TEXT("false"))}}));
	ASSERT_TRUE(Payload.IsValid());
	const TArray<TSharedPtr<FJsonValue>> Actors = Payload->GetArrayField(TEXT("actors"));
	ASSERT_EQ(Actors.Num(), 2);
	EXPECT_EQ(ToStd(Collect(Actors, TEXT("label"))), (std::vector<std::string>{"VisualOnlySphere", "ReproCylinder"}));
	const FZorvekMCPBridgeVector SphereMin = VectorOf(ObjectAt(ObjectAt(Actors[0]->AsObject(), TEXT("bounds")), TEXT("min")));
	const FZorvekMCPBridgeVector CylinderMax = VectorOf(ObjectAt(ObjectAt(Actors[1]->AsObject(), TEXT("bounds")), TEXT("max")));
	const TSharedPtr<FJsonObject> Union = ObjectAt(Payload, TEXT("target_bounds"));
	EXPECT_EQ(JsonText(ObjectAt(Union, TEXT("min"))), JsonText(ZorvekMCPBridgeActorReadback::MakeVectorJson(SphereMin)));
	EXPECT_EQ(JsonText(ObjectAt(Union, TEXT("max"))), JsonText(ZorvekMCPBridgeActorReadback::MakeVectorJson(CylinderMax)));
}

TEST_F(ViewportCaptureTest, AnOrthographicTopViewReportsOrthoXYAndItsOrthographicLocation)
{
	Viewport().SetViewportType(SimulatedViewportTypes::OrthoXY);
	Viewport().SetOrthoView({100.0, 200.0, 0.0}, {-90.0, 0.0, 0.0}, 8000.0);
	const TSharedPtr<FJsonObject> Still = FToolRunner::Payload(Capture({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}, {TEXT("Focus"), Text(TEXT("FALSE"))}}));
	ASSERT_TRUE(Still.IsValid());
	EXPECT_EQ(S(Still->GetStringField(TEXT("viewport_type"))), "OrthoXY");
	EXPECT_EQ(JsonText(ObjectAt(ObjectAt(Still, TEXT("camera")), TEXT("location"))), "{\"x\":100,\"y\":200,\"z\":0}");

	// §3.2: an orthographic focus centres the view on the box.
	const TSharedPtr<FJsonObject> Focused = FToolRunner::Payload(Capture({{TEXT("ActorNameOrLabel"), Text(TEXT("ReproCylinder"))}}));
	ASSERT_TRUE(Focused.IsValid());
	EXPECT_EQ(JsonText(ObjectAt(ObjectAt(Focused, TEXT("camera")), TEXT("location"))), JsonText(ObjectAt(ObjectAt(Focused, TEXT("target_bounds")), TEXT("center"))));
}

// Names.

TEST(ViewportCaptureNames, ViewportTypesAndFileNamesUseTheEngineWords)
{
	const std::vector<std::string> Expected = {"OrthoXY", "OrthoXZ", "OrthoYZ", "Perspective", "OrthoFreelook", "OrthoNegativeXY", "OrthoNegativeXZ", "OrthoNegativeYZ"};
	for (int32 Type = 0; Type < 8; ++Type)
	{
		EXPECT_EQ(S(ZorvekMCPBridgeViewportCapture::GetViewportTypeName(Type)), Expected[(size_t)Type]);
	}
	EXPECT_EQ(S(ZorvekMCPBridgeViewportCapture::GetViewportTypeName(8)), "Unknown_8");
	EXPECT_EQ(S(ZorvekMCPBridgeViewportCapture::GetViewportTypeName(255)), "Unknown_255");

	// unreal-api-core.md §4.5: %M is the minute and %s the millisecond, three digits.
	EXPECT_EQ(S(ZorvekMCPBridgeViewportCapture::MakeScreenshotFileName(TEXT("ZorvekViewport"), FDateTime(2025, 3, 15, 9, 30, 7, 45))), "ZorvekViewport_20250315_093007_045.png");

	EXPECT_TRUE(ZorvekMCPBridgeViewportCapture::ValidateFilenamePrefix(TEXT("My shot-1 (v2)")).IsEmpty());
	for (const TCHAR* Refused : {TEXT("a/b"), TEXT("a\\b"), TEXT("C:x"), TEXT(".."), TEXT("a?b"), TEXT("tab\there")})
	{
		EXPECT_FALSE(ZorvekMCPBridgeViewportCapture::ValidateFilenamePrefix(Refused).IsEmpty()) << S(Refused);
	}
}
