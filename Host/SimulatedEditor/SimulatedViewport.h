// The active Level Editor viewport of the simulated editor: its size, viewport type, perspective
// and orthographic view transforms, FocusViewportOnBox as FEditorViewportClient does it, and a
// software render of the level as the camera sees it, read back as the engine's ReadPixels gives
// pixels (B, G, R, A bytes, row-major from the top left).
//
// The render is a plain one: the meshes of primitive components drawn as flat-shaded solids
// (boxes, spheres, cylinders, cones, planes at their world transforms) with a depth buffer, the
// editor sprites as small squares, a ground grid on Z = 0 under a sky gradient, and selected
// actors outlined in the editor's orange with their bounds box drawn as a wireframe. It has no
// materials, lights, shadows or post-processing; what it shows truthfully is framing, placement,
// size and selection.
#pragma once

#include "CoreMinimal.h"
#include "SimulatedWorldMath.h"

#include <vector>

class FSimulatedWorld;

// ELevelViewportType values.
namespace SimulatedViewportTypes
{
	constexpr int32 OrthoXY = 0;
	constexpr int32 OrthoXZ = 1;
	constexpr int32 OrthoYZ = 2;
	constexpr int32 Perspective = 3;
	constexpr int32 OrthoFreelook = 4;
	constexpr int32 OrthoNegativeXY = 5;
	constexpr int32 OrthoNegativeXZ = 6;
	constexpr int32 OrthoNegativeYZ = 7;
}

class FSimulatedViewport
{
public:
	explicit FSimulatedViewport(FSimulatedWorld& InWorld);

	// Whether the level editor has an active viewport, and whether its client has an FViewport
	// (tests take them away to model start-up and unattended runs).
	bool HasLevelViewport() const { return bHasLevelViewport; }
	void SetHasLevelViewport(bool bInHasLevelViewport) { bHasLevelViewport = bInHasLevelViewport; }
	bool HasFViewport() const { return bHasFViewport; }
	void SetHasFViewport(bool bInHasFViewport) { bHasFViewport = bInHasFViewport; }

	int32 GetWidth() const { return Width; }
	int32 GetHeight() const { return Height; }
	// A new size; the next draw renders at it.
	void SetSize(int32 InWidth, int32 InHeight);
	int32 GetViewportType() const { return ViewportType; }
	void SetViewportType(int32 InViewportType) { ViewportType = InViewportType; }
	bool IsPerspective() const { return ViewportType == SimulatedViewportTypes::Perspective; }
	double GetViewFOV() const { return ViewFOV; }
	double GetOrthoZoom() const { return OrthoZoom; }

	// GetViewLocation / GetViewRotation: the perspective transform in a perspective view, the
	// orthographic one otherwise.
	FSimulatedVector GetViewLocation() const;
	FSimulatedRotator GetViewRotation() const;
	void SetPerspectiveView(const FSimulatedVector& Location, const FSimulatedRotator& Rotation);
	void SetOrthoView(const FSimulatedVector& Location, const FSimulatedRotator& Rotation, double InOrthoZoom);

	// FEditorViewportClient::FocusViewportOnBox: nothing without an FViewport; the rotation is
	// kept; perspective views move back by Radius * aspect / tan(FOV / 2) from the box centre,
	// orthographic ones centre on it with OrthoZoom 30 * Radius. Not instant: the camera arrives
	// on a later tick and the view reads the old location until then.
	void FocusViewportOnBox(const FSimulatedBox& Box, bool bInstant);
	bool IsTransitionPending() const { return bTransitionPending; }
	void Invalidate() { bInvalidated = true; }
	// FViewport::Draw: renders the level now.
	void Draw();
	// FViewport::ReadPixels: the last drawn frame (drawn once first if the viewport never drew),
	// Width * Height * 4 bytes B, G, R, A. A is 0, as the engine's read-back alpha is no
	// opacity (callers set it to 255 before encoding). False without an FViewport or at size 0.
	bool ReadPixels(TArray<uint8>& OutBgraPixels);
	int32 GetDrawCount() const { return DrawCount; }
	// The editor tick: a pending transition arrives; an invalidated viewport (the level changed,
	// the camera moved) redraws, a realtime one always does. Not realtime by default, so the
	// headless host does not render every frame.
	void Tick();
	void SetRealtime(bool bInRealtime) { bRealtime = bInRealtime; }

	// World position -> pixel, as the last camera set projects it; false behind the camera.
	bool ProjectWorldToPixel(const FSimulatedVector& Position, double& OutX, double& OutY) const;

private:
	struct FCamera;
	FCamera MakeCamera() const;
	void Render(std::vector<uint8>& OutPixels) const;

	FSimulatedWorld& World;
	bool bHasLevelViewport = true;
	bool bHasFViewport = true;
	bool bRealtime = false;
	bool bInvalidated = false;
	int32 Width = 1280;
	int32 Height = 720;
	int32 ViewportType = SimulatedViewportTypes::Perspective;
	double ViewFOV = 90.0;
	FSimulatedVector PerspectiveLocation = {-600.0, 0.0, 300.0};
	FSimulatedRotator PerspectiveRotation = {-20.0, 0.0, 0.0};
	FSimulatedVector OrthoLocation;
	FSimulatedRotator OrthoRotation;
	double OrthoZoom = 10000.0;
	bool bTransitionPending = false;
	FSimulatedVector TransitionTarget;
	std::vector<uint8> Frame;
	int32 FrameWidth = 0;
	int32 FrameHeight = 0;
	int32 DrawCount = 0;
};

// PNG encoding of BGRA pixels (what FImageUtils::PNGCompressImageArray makes from a viewport
// read): 8-bit RGBA, every row filtered, zlib-wrapped deflate with run-length matches. Empty for
// an empty image or a size that does not match the pixels.
TArray<uint8> SimulatedEncodePng(int32 Width, int32 Height, const TArray<uint8>& BgraPixels);
// Reads back what SimulatedEncodePng writes (and any PNG of 8-bit RGB/RGBA with stored or fixed
// Huffman blocks): for tests that check the image. False when the data is no such PNG.
bool SimulatedDecodePng(const TArray<uint8>& Png, int32& OutWidth, int32& OutHeight, TArray<uint8>& OutRgbaPixels);
