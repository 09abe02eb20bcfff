#include "SimulatedViewport.h"

#include "SimulatedWorld.h"

#include <cmath>
#include <limits>

namespace
{
	constexpr double SimViewportPi = 3.1415926535897932;
	// FEditorViewportClient's minimum focus radius.
	constexpr double SimViewportMinimumFocusRadius = 10.0;
	// GetMinimumOrthoZoom and MAX_ORTHOZOOM.
	constexpr double SimViewportMinimumOrthoZoom = 250.0;
	constexpr double SimViewportMaximumOrthoZoom = 1e25;
	constexpr double SimViewportDefaultOrthoZoom = 10000.0;
	constexpr double SimViewportNearPlane = 1.0;

	struct FSimViewportColor
	{
		uint8 R = 0;
		uint8 G = 0;
		uint8 B = 0;
	};

	// The editor's selection colour (orange) and the wireframe of selected bounds.
	const FSimViewportColor SimViewportSelectionColor = {243, 156, 18};
	const FSimViewportColor SimViewportBoundsColor = {255, 214, 64};

	// A vertex in view space: X right, Y up, Z forward.
	struct FSimViewportVertex
	{
		double X = 0.0;
		double Y = 0.0;
		double Z = 0.0;
	};
}

struct FSimulatedViewport::FCamera
{
	FSimulatedVector Eye;
	FSimulatedVector Forward;
	FSimulatedVector Right;
	FSimulatedVector Up;
	bool bPerspective = true;
	double TanHalfFov = 1.0;
	double OrthoHalfWidth = 1.0;
	double Aspect = 1.0;
	int32 Width = 0;
	int32 Height = 0;

	FSimViewportVertex ToView(const FSimulatedVector& Position) const
	{
		const FSimulatedVector Delta = Position - Eye;
		return {FSimulatedVector::Dot(Delta, Right), FSimulatedVector::Dot(Delta, Up), FSimulatedVector::Dot(Delta, Forward)};
	}

	// View space -> pixel coordinates; perspective needs Z at or beyond the near plane.
	void ToPixel(const FSimViewportVertex& Vertex, double& OutX, double& OutY) const
	{
		double NdcX = 0.0;
		double NdcY = 0.0;
		if (bPerspective)
		{
			// The horizontal field of view is the FOV; the vertical one follows the aspect.
			NdcX = Vertex.X / (Vertex.Z * TanHalfFov);
			NdcY = Vertex.Y / (Vertex.Z * TanHalfFov) * Aspect;
		}
		else
		{
			NdcX = Vertex.X / OrthoHalfWidth;
			NdcY = Vertex.Y / OrthoHalfWidth * Aspect;
		}
		OutX = (NdcX + 1.0) * 0.5 * Width;
		OutY = (1.0 - NdcY) * 0.5 * Height;
	}
};

FSimulatedViewport::FSimulatedViewport(FSimulatedWorld& InWorld)
	: World(InWorld)
{
}

void FSimulatedViewport::SetSize(int32 InWidth, int32 InHeight)
{
	Width = FMath::Max(InWidth, 0);
	Height = FMath::Max(InHeight, 0);
}

FSimulatedVector FSimulatedViewport::GetViewLocation() const
{
	return IsPerspective() ? PerspectiveLocation : OrthoLocation;
}

FSimulatedRotator FSimulatedViewport::GetViewRotation() const
{
	return IsPerspective() ? PerspectiveRotation : OrthoRotation;
}

void FSimulatedViewport::SetPerspectiveView(const FSimulatedVector& Location, const FSimulatedRotator& Rotation)
{
	PerspectiveLocation = Location;
	PerspectiveRotation = Rotation;
	bTransitionPending = false;
}

void FSimulatedViewport::SetOrthoView(const FSimulatedVector& Location, const FSimulatedRotator& Rotation, double InOrthoZoom)
{
	OrthoLocation = Location;
	OrthoRotation = Rotation;
	OrthoZoom = InOrthoZoom;
	bTransitionPending = false;
}

void FSimulatedViewport::FocusViewportOnBox(const FSimulatedBox& Box, bool bInstant)
{
	if (!bHasFViewport)
	{
		return;
	}
	// FBox's centre and extent are taken as the corners give them, valid or not.
	const FSimulatedVector Position = (Box.Min + Box.Max) * 0.5;
	double Radius = FMath::Max(((Box.Max - Box.Min) * 0.5).Size(), SimViewportMinimumFocusRadius);
	if (IsPerspective())
	{
		const double Aspect = (Width > 0 && Height > 0) ? (double)Width / (double)Height : 1.0;
		if (Aspect > 1.0)
		{
			Radius *= Aspect;
		}
		const double Distance = Radius / std::tan(ViewFOV * 0.5 * SimViewportPi / 180.0);
		const FSimulatedVector Target = Position - PerspectiveRotation.Vector() * Distance;
		if (bInstant)
		{
			PerspectiveLocation = Target;
			bTransitionPending = false;
		}
		else
		{
			TransitionTarget = Target;
			bTransitionPending = true;
		}
	}
	else
	{
		OrthoLocation = Position;
		OrthoZoom = (Width > 0 && Height > 0) ? FMath::Clamp(30.0 * Radius, SimViewportMinimumOrthoZoom, SimViewportMaximumOrthoZoom) : SimViewportDefaultOrthoZoom;
	}
	Invalidate();
}

void FSimulatedViewport::Tick()
{
	if (bTransitionPending)
	{
		PerspectiveLocation = TransitionTarget;
		bTransitionPending = false;
		bInvalidated = true;
	}
	if (bHasFViewport && (bRealtime || bInvalidated))
	{
		Draw();
	}
}

void FSimulatedViewport::Draw()
{
	if (!bHasFViewport)
	{
		return;
	}
	Render(Frame);
	FrameWidth = Width;
	FrameHeight = Height;
	bInvalidated = false;
	++DrawCount;
}

bool FSimulatedViewport::ReadPixels(TArray<uint8>& OutBgraPixels)
{
	OutBgraPixels.Reset();
	if (!bHasFViewport || Width <= 0 || Height <= 0)
	{
		return false;
	}
	if (DrawCount == 0 || FrameWidth != Width || FrameHeight != Height)
	{
		// The viewport has drawn at its size before anyone can read it.
		Draw();
	}
	OutBgraPixels.SetNumUninitialized((int32)Frame.size());
	for (size_t Index = 0; Index < Frame.size(); ++Index)
	{
		// The read-back's alpha is no opacity: the scene colour target leaves it at 0.
		OutBgraPixels[(int32)Index] = (Index % 4 == 3) ? 0 : Frame[Index];
	}
	return true;
}

FSimulatedViewport::FCamera FSimulatedViewport::MakeCamera() const
{
	FCamera Camera;
	Camera.Width = Width;
	Camera.Height = Height;
	Camera.Aspect = Height > 0 ? (double)Width / (double)Height : 1.0;
	Camera.bPerspective = IsPerspective();
	const auto SetAxes = [&Camera](const FSimulatedVector& Forward, const FSimulatedVector& Right, const FSimulatedVector& Up)
	{
		Camera.Forward = Forward;
		Camera.Right = Right;
		Camera.Up = Up;
	};
	const auto SetAxesFromRotator = [&SetAxes](const FSimulatedRotator& Rotator)
	{
		// FRotationMatrix: X forward, Y right, Z up.
		const FSimulatedQuat Quat = FSimulatedQuat::FromRotator(Rotator);
		SetAxes(Quat.RotateVector({1.0, 0.0, 0.0}), Quat.RotateVector({0.0, 1.0, 0.0}), Quat.RotateVector({0.0, 0.0, 1.0}));
	};
	if (Camera.bPerspective)
	{
		Camera.Eye = PerspectiveLocation;
		Camera.TanHalfFov = std::tan(ViewFOV * 0.5 * SimViewportPi / 180.0);
		SetAxesFromRotator(PerspectiveRotation);
		return Camera;
	}
	// The orthographic views look along fixed axes; only OrthoFreelook uses the stored rotation.
	Camera.Eye = OrthoLocation;
	Camera.OrthoHalfWidth = FMath::Max(OrthoZoom / 15.0 * 0.5, 1e-3);
	switch (ViewportType)
	{
	case SimulatedViewportTypes::OrthoXY: SetAxes({0, 0, -1}, {1, 0, 0}, {0, -1, 0}); break;
	case SimulatedViewportTypes::OrthoNegativeXY: SetAxes({0, 0, 1}, {1, 0, 0}, {0, 1, 0}); break;
	case SimulatedViewportTypes::OrthoXZ: SetAxes({0, -1, 0}, {1, 0, 0}, {0, 0, 1}); break;
	case SimulatedViewportTypes::OrthoNegativeXZ: SetAxes({0, 1, 0}, {-1, 0, 0}, {0, 0, 1}); break;
	case SimulatedViewportTypes::OrthoYZ: SetAxes({1, 0, 0}, {0, 1, 0}, {0, 0, 1}); break;
	case SimulatedViewportTypes::OrthoNegativeYZ: SetAxes({-1, 0, 0}, {0, -1, 0}, {0, 0, 1}); break;
	default: SetAxesFromRotator(OrthoRotation); break;
	}
	// Depth in an orthographic view counts from far behind the centre.
	Camera.Eye = Camera.Eye - Camera.Forward * 1e6;
	return Camera;
}

bool FSimulatedViewport::ProjectWorldToPixel(const FSimulatedVector& Position, double& OutX, double& OutY) const
{
	const FCamera Camera = MakeCamera();
	const FSimViewportVertex Vertex = Camera.ToView(Position);
	if (Camera.bPerspective && Vertex.Z < SimViewportNearPlane)
	{
		return false;
	}
	Camera.ToPixel(Vertex, OutX, OutY);
	return true;
}

namespace
{
	// The frame being drawn: colours, depth and the actor each pixel shows.
	struct FSimViewportCanvas
	{
		int32 Width = 0;
		int32 Height = 0;
		std::vector<FSimViewportColor> Colors;
		std::vector<float> Depth;
		std::vector<int32> ActorIds;

		void Reset(int32 InWidth, int32 InHeight)
		{
			Width = InWidth;
			Height = InHeight;
			Colors.assign((size_t)Width * Height, FSimViewportColor());
			Depth.assign((size_t)Width * Height, std::numeric_limits<float>::max());
			ActorIds.assign((size_t)Width * Height, 0);
		}

		void Plot(int32 X, int32 Y, const FSimViewportColor& Color)
		{
			if (X >= 0 && Y >= 0 && X < Width && Y < Height)
			{
				Colors[(size_t)Y * Width + X] = Color;
			}
		}
	};

	// Sutherland-Hodgman against the near plane (perspective views only).
	std::vector<FSimViewportVertex> SimViewportClipNear(const std::vector<FSimViewportVertex>& Polygon, bool bPerspective)
	{
		if (!bPerspective)
		{
			return Polygon;
		}
		std::vector<FSimViewportVertex> Result;
		for (size_t Index = 0; Index < Polygon.size(); ++Index)
		{
			const FSimViewportVertex& A = Polygon[Index];
			const FSimViewportVertex& B = Polygon[(Index + 1) % Polygon.size()];
			const bool bAInside = A.Z >= SimViewportNearPlane;
			const bool bBInside = B.Z >= SimViewportNearPlane;
			if (bAInside)
			{
				Result.push_back(A);
			}
			if (bAInside != bBInside)
			{
				const double T = (SimViewportNearPlane - A.Z) / (B.Z - A.Z);
				Result.push_back({A.X + (B.X - A.X) * T, A.Y + (B.Y - A.Y) * T, SimViewportNearPlane});
			}
		}
		return Result;
	}

	void SimViewportFillTriangle(FSimViewportCanvas& Canvas, const double (&X)[3], const double (&Y)[3], const double (&Z)[3], const FSimViewportColor& Color, int32 ActorId)
	{
		const double Area = (X[1] - X[0]) * (Y[2] - Y[0]) - (X[2] - X[0]) * (Y[1] - Y[0]);
		if (std::fabs(Area) < 1e-9)
		{
			return;
		}
		const int32 MinX = FMath::Max(0, (int32)std::floor(FMath::Min(X[0], FMath::Min(X[1], X[2]))));
		const int32 MaxX = FMath::Min(Canvas.Width - 1, (int32)std::ceil(FMath::Max(X[0], FMath::Max(X[1], X[2]))));
		const int32 MinY = FMath::Max(0, (int32)std::floor(FMath::Min(Y[0], FMath::Min(Y[1], Y[2]))));
		const int32 MaxY = FMath::Min(Canvas.Height - 1, (int32)std::ceil(FMath::Max(Y[0], FMath::Max(Y[1], Y[2]))));
		for (int32 PixelY = MinY; PixelY <= MaxY; ++PixelY)
		{
			const double SampleY = PixelY + 0.5;
			for (int32 PixelX = MinX; PixelX <= MaxX; ++PixelX)
			{
				const double SampleX = PixelX + 0.5;
				const double W0 = ((X[1] - SampleX) * (Y[2] - SampleY) - (X[2] - SampleX) * (Y[1] - SampleY)) / Area;
				const double W1 = ((X[2] - SampleX) * (Y[0] - SampleY) - (X[0] - SampleX) * (Y[2] - SampleY)) / Area;
				const double W2 = 1.0 - W0 - W1;
				if (W0 < 0.0 || W1 < 0.0 || W2 < 0.0)
				{
					continue;
				}
				const float PixelDepth = (float)(W0 * Z[0] + W1 * Z[1] + W2 * Z[2]);
				const size_t Index = (size_t)PixelY * Canvas.Width + PixelX;
				if (PixelDepth < Canvas.Depth[Index])
				{
					Canvas.Depth[Index] = PixelDepth;
					Canvas.Colors[Index] = Color;
					Canvas.ActorIds[Index] = ActorId;
				}
			}
		}
	}

	void SimViewportDrawLine(FSimViewportCanvas& Canvas, double X0, double Y0, double X1, double Y1, const FSimViewportColor& Color)
	{
		const double Steps = FMath::Max(std::fabs(X1 - X0), std::fabs(Y1 - Y0));
		if (!std::isfinite(Steps) || Steps > 20000.0)
		{
			return;
		}
		const int32 Count = (int32)Steps + 1;
		for (int32 Step = 0; Step <= Count; ++Step)
		{
			const double T = Count > 0 ? (double)Step / Count : 0.0;
			Canvas.Plot((int32)std::floor(X0 + (X1 - X0) * T), (int32)std::floor(Y0 + (Y1 - Y0) * T), Color);
		}
	}

	// A world segment, clipped to the near plane, drawn over everything.
	template <typename FCameraType>
	void SimViewportDrawWorldLine(FSimViewportCanvas& Canvas, const FCameraType& Camera, const FSimulatedVector& A, const FSimulatedVector& B, const FSimViewportColor& Color)
	{
		FSimViewportVertex ViewA = Camera.ToView(A);
		FSimViewportVertex ViewB = Camera.ToView(B);
		if (Camera.bPerspective)
		{
			if (ViewA.Z < SimViewportNearPlane && ViewB.Z < SimViewportNearPlane)
			{
				return;
			}
			FSimViewportVertex& Behind = ViewA.Z < SimViewportNearPlane ? ViewA : ViewB;
			const FSimViewportVertex& Front = ViewA.Z < SimViewportNearPlane ? ViewB : ViewA;
			if (Behind.Z < SimViewportNearPlane)
			{
				const double T = (SimViewportNearPlane - Front.Z) / (Behind.Z - Front.Z);
				Behind = {Front.X + (Behind.X - Front.X) * T, Front.Y + (Behind.Y - Front.Y) * T, SimViewportNearPlane};
			}
		}
		double X0 = 0.0;
		double Y0 = 0.0;
		double X1 = 0.0;
		double Y1 = 0.0;
		Camera.ToPixel(ViewA, X0, Y0);
		Camera.ToPixel(ViewB, X1, Y1);
		// Segments far off screen are cut to a sensible span before stepping.
		const double Limit = 4.0 * (Canvas.Width + Canvas.Height);
		if (std::fabs(X0) > Limit || std::fabs(Y0) > Limit || std::fabs(X1) > Limit || std::fabs(Y1) > Limit)
		{
			for (int32 Halving = 0; Halving < 40 && (std::fabs(X0) > Limit || std::fabs(Y0) > Limit); ++Halving)
			{
				X0 = (X0 + X1) * 0.5;
				Y0 = (Y0 + Y1) * 0.5;
			}
			for (int32 Halving = 0; Halving < 40 && (std::fabs(X1) > Limit || std::fabs(Y1) > Limit); ++Halving)
			{
				X1 = (X0 + X1) * 0.5;
				Y1 = (Y0 + Y1) * 0.5;
			}
		}
		SimViewportDrawLine(Canvas, X0, Y0, X1, Y1, Color);
	}

	// The local polygons of a mesh shape inside its bounds box.
	std::vector<std::vector<FSimulatedVector>> SimViewportShapePolygons(ESimulatedMeshShape Shape, const FSimulatedBox& Bounds)
	{
		const FSimulatedVector C = Bounds.GetCenter();
		const FSimulatedVector E = Bounds.GetExtent();
		std::vector<std::vector<FSimulatedVector>> Polygons;
		const auto Corner = [&C, &E](double SX, double SY, double SZ) { return FSimulatedVector(C.X + SX * E.X, C.Y + SY * E.Y, C.Z + SZ * E.Z); };
		constexpr int32 Segments = 16;
		switch (Shape)
		{
		case ESimulatedMeshShape::Plane:
			Polygons.push_back({Corner(-1, -1, 0), Corner(1, -1, 0), Corner(1, 1, 0), Corner(-1, 1, 0)});
			break;
		case ESimulatedMeshShape::Sphere:
			for (int32 Ring = 0; Ring < Segments / 2; ++Ring)
			{
				const double Theta0 = SimViewportPi * Ring / (Segments / 2) - SimViewportPi / 2;
				const double Theta1 = SimViewportPi * (Ring + 1) / (Segments / 2) - SimViewportPi / 2;
				for (int32 Segment = 0; Segment < Segments; ++Segment)
				{
					const double Phi0 = 2.0 * SimViewportPi * Segment / Segments;
					const double Phi1 = 2.0 * SimViewportPi * (Segment + 1) / Segments;
					const auto Point = [&Corner](double Theta, double Phi) { return Corner(std::cos(Theta) * std::cos(Phi), std::cos(Theta) * std::sin(Phi), std::sin(Theta)); };
					Polygons.push_back({Point(Theta0, Phi0), Point(Theta0, Phi1), Point(Theta1, Phi1), Point(Theta1, Phi0)});
				}
			}
			break;
		case ESimulatedMeshShape::Cylinder:
		case ESimulatedMeshShape::Cone:
		{
			const bool bCone = Shape == ESimulatedMeshShape::Cone;
			std::vector<FSimulatedVector> Bottom;
			std::vector<FSimulatedVector> Top;
			for (int32 Segment = 0; Segment < Segments; ++Segment)
			{
				const double Phi0 = 2.0 * SimViewportPi * Segment / Segments;
				const double Phi1 = 2.0 * SimViewportPi * (Segment + 1) / Segments;
				Bottom.push_back(Corner(std::cos(Phi0), std::sin(Phi0), -1));
				Top.push_back(Corner(std::cos(Phi0), std::sin(Phi0), 1));
				if (bCone)
				{
					Polygons.push_back({Corner(std::cos(Phi0), std::sin(Phi0), -1), Corner(std::cos(Phi1), std::sin(Phi1), -1), Corner(0, 0, 1)});
				}
				else
				{
					Polygons.push_back({Corner(std::cos(Phi0), std::sin(Phi0), -1), Corner(std::cos(Phi1), std::sin(Phi1), -1), Corner(std::cos(Phi1), std::sin(Phi1), 1), Corner(std::cos(Phi0), std::sin(Phi0), 1)});
				}
			}
			Polygons.push_back(Bottom);
			if (!bCone)
			{
				Polygons.push_back(Top);
			}
			break;
		}
		default:
			Polygons.push_back({Corner(-1, -1, -1), Corner(1, -1, -1), Corner(1, 1, -1), Corner(-1, 1, -1)});
			Polygons.push_back({Corner(-1, -1, 1), Corner(1, -1, 1), Corner(1, 1, 1), Corner(-1, 1, 1)});
			Polygons.push_back({Corner(-1, -1, -1), Corner(1, -1, -1), Corner(1, -1, 1), Corner(-1, -1, 1)});
			Polygons.push_back({Corner(-1, 1, -1), Corner(1, 1, -1), Corner(1, 1, 1), Corner(-1, 1, 1)});
			Polygons.push_back({Corner(-1, -1, -1), Corner(-1, 1, -1), Corner(-1, 1, 1), Corner(-1, -1, 1)});
			Polygons.push_back({Corner(1, -1, -1), Corner(1, 1, -1), Corner(1, 1, 1), Corner(1, -1, 1)});
			break;
		}
		return Polygons;
	}

	// A stable base colour per actor name from a muted palette, so shading and outlines read.
	FSimViewportColor SimViewportBaseColor(const FString& Name)
	{
		static const FSimViewportColor Palette[] = {{172, 172, 178}, {150, 170, 200}, {200, 172, 132}, {140, 180, 140}, {192, 146, 146}, {162, 152, 194}, {120, 170, 176}};
		uint32 Hash = 2166136261u;
		for (int32 Index = 0; Index < Name.Len(); ++Index)
		{
			Hash = (Hash ^ (uint32)Name[Index]) * 16777619u;
		}
		return Palette[Hash % UE_ARRAY_COUNT(Palette)];
	}

	// The twelve edges of a box.
	template <typename FCameraType>
	void SimViewportDrawBoxEdges(FSimViewportCanvas& Canvas, const FCameraType& Camera, const FSimulatedVector (&Corners)[8], const FSimViewportColor& Color)
	{
		const int32 Edges[12][2] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
		for (const auto& Edge : Edges)
		{
			SimViewportDrawWorldLine(Canvas, Camera, Corners[Edge[0]], Corners[Edge[1]], Color);
		}
	}
}

namespace
{
	// True when the box cannot show: behind the camera, or wholly beyond one side of the frame.
	template <typename FCameraType>
	bool SimViewportIsOutsideView(const FCameraType& Camera, const FSimulatedBox& Box)
	{
		const FSimulatedVector& A = Box.Min;
		const FSimulatedVector& B = Box.Max;
		const FSimulatedVector Corners[8] = {{A.X, A.Y, A.Z}, {B.X, A.Y, A.Z}, {B.X, B.Y, A.Z}, {A.X, B.Y, A.Z}, {A.X, A.Y, B.Z}, {B.X, A.Y, B.Z}, {B.X, B.Y, B.Z}, {A.X, B.Y, B.Z}};
		int32 Left = 0;
		int32 Right = 0;
		int32 Above = 0;
		int32 Below = 0;
		int32 Behind = 0;
		for (const FSimulatedVector& Corner : Corners)
		{
			const FSimViewportVertex View = Camera.ToView(Corner);
			if (Camera.bPerspective && View.Z < SimViewportNearPlane)
			{
				// Behind the camera the projection flips: such corners only count as behind.
				++Behind;
				continue;
			}
			double X = 0.0;
			double Y = 0.0;
			Camera.ToPixel(View, X, Y);
			Left += X < 0.0 ? 1 : 0;
			Right += X > Camera.Width ? 1 : 0;
			Above += Y < 0.0 ? 1 : 0;
			Below += Y > Camera.Height ? 1 : 0;
		}
		if (Behind > 0)
		{
			return Behind == 8;
		}
		return Left == 8 || Right == 8 || Above == 8 || Below == 8;
	}
}

void FSimulatedViewport::Render(std::vector<uint8>& OutPixels) const
{
	const FCamera Camera = MakeCamera();
	FSimViewportCanvas Canvas;
	Canvas.Reset(Width, Height);

	// Sky gradient above a darker floor tone: where the horizon falls shows the camera's pitch.
	double HorizonY = Height * 0.5;
	if (Camera.bPerspective)
	{
		const FSimulatedVector Flat(Camera.Forward.X, Camera.Forward.Y, 0.0);
		const double FlatSize = Flat.Size();
		double HorizonX = 0.0;
		const FSimViewportVertex Far = Camera.ToView(Camera.Eye + (FlatSize > 1e-6 ? Flat * (1e7 / FlatSize) : FSimulatedVector(1e7, 0, 0)));
		if (Far.Z > SimViewportNearPlane)
		{
			Camera.ToPixel(Far, HorizonX, HorizonY);
		}
		else
		{
			HorizonY = Camera.Forward.Z > 0 ? Height * 2.0 : -Height * 1.0;
		}
	}
	for (int32 Y = 0; Y < Height; ++Y)
	{
		const bool bSky = !Camera.bPerspective || Y < HorizonY;
		const double T = Height > 1 ? (double)Y / (Height - 1) : 0.0;
		const FSimViewportColor Color = bSky ? FSimViewportColor{(uint8)(52 + 40 * T), (uint8)(62 + 44 * T), (uint8)(78 + 46 * T)} : FSimViewportColor{46, 46, 48};
		for (int32 X = 0; X < Width; ++X)
		{
			Canvas.Colors[(size_t)Y * Width + X] = Color;
		}
	}

	// Ground grid on Z = 0 around the view: a line every metre, brighter every ten.
	const FSimulatedVector GridCentre = Camera.bPerspective ? Camera.Eye : OrthoLocation;
	const double GridSpacing = 100.0;
	const int32 GridHalfLines = 60;
	const double OriginX = std::floor(GridCentre.X / GridSpacing) * GridSpacing;
	const double OriginY = std::floor(GridCentre.Y / GridSpacing) * GridSpacing;
	const double Span = GridSpacing * GridHalfLines;
	for (int32 Line = -GridHalfLines; Line <= GridHalfLines; ++Line)
	{
		const double OffsetX = OriginX + Line * GridSpacing;
		const double OffsetY = OriginY + Line * GridSpacing;
		const bool bMajorX = std::fmod(std::fabs(OffsetX), 1000.0) < 1.0;
		const bool bMajorY = std::fmod(std::fabs(OffsetY), 1000.0) < 1.0;
		SimViewportDrawWorldLine(Canvas, Camera, {OffsetX, OriginY - Span, 0.0}, {OffsetX, OriginY + Span, 0.0}, bMajorX ? FSimViewportColor{118, 118, 124} : FSimViewportColor{78, 78, 84});
		SimViewportDrawWorldLine(Canvas, Camera, {OriginX - Span, OffsetY, 0.0}, {OriginX + Span, OffsetY, 0.0}, bMajorY ? FSimViewportColor{118, 118, 124} : FSimViewportColor{78, 78, 84});
	}

	// The level: every live actor's primitives, flat-shaded against a fixed light.
	struct FWireframe
	{
		FSimulatedBox LocalBounds;
		FSimulatedTransform ComponentToWorld;
	};
	std::vector<FWireframe> Wireframes;
	const FSimulatedVector LightDirection = FSimulatedVector(0.35, 0.45, 0.82) * (1.0 / FSimulatedVector(0.35, 0.45, 0.82).Size());
	const std::vector<FSimulatedActor*> Actors = World.GetEveryActor();
	for (size_t ActorIndex = 0; ActorIndex < Actors.size(); ++ActorIndex)
	{
		const FSimulatedActor& Actor = *Actors[ActorIndex];
		const int32 ActorId = (int32)ActorIndex + 1;
		const FSimViewportColor BaseColor = SimViewportBaseColor(Actor.Object->Name);
		for (const std::unique_ptr<FSimulatedComponent>& Component : Actor.Components)
		{
			const FSimulatedValue* Visible = World.FindValue(*Component->Object, TEXT("bVisible"));
			if (!Component->IsPrimitive() || (Visible && !Visible->Bool))
			{
				continue;
			}
			const FSimulatedTransform ComponentToWorld = World.GetComponentToWorld(*Component);
			FSimulatedBox Culling;
			if (World.GetComponentBounds(*Component, Culling) && SimViewportIsOutsideView(Camera, Culling))
			{
				continue;
			}
			std::vector<std::vector<FSimulatedVector>> Polygons;
			FSimViewportColor Color = BaseColor;
			if (Component->Kind == ESimulatedComponentKind::StaticMesh)
			{
				const FSimulatedMeshInfo* Mesh = World.FindMeshInfo(World.GetStaticMesh(*Component));
				if (!Mesh)
				{
					continue;
				}
				for (std::vector<FSimulatedVector>& Polygon : SimViewportShapePolygons(Mesh->Shape, Mesh->LocalBounds))
				{
					for (FSimulatedVector& Point : Polygon)
					{
						Point = ComponentToWorld.TransformPosition(Point);
					}
					Polygons.push_back(std::move(Polygon));
				}
			}
			else
			{
				// Brushes and other shapeless primitives draw as wireframes after the solids, as the
				// editor draws volumes; capsules and sprites as their bounds box, sprites pale.
				if (Component->Kind == ESimulatedComponentKind::OtherPrimitive)
				{
					if (Component->LocalBounds.bIsValid)
					{
						Wireframes.push_back({Component->LocalBounds, ComponentToWorld});
					}
					continue;
				}
				FSimulatedBox Bounds;
				if (!World.GetComponentBounds(*Component, Bounds) || (Bounds.GetExtent().Size() <= 0.0))
				{
					continue;
				}
				if (Component->Kind == ESimulatedComponentKind::EditorSprite)
				{
					Bounds = FSimulatedBox::FromCenterAndExtent(Bounds.GetCenter(), Bounds.GetExtent() * 0.25);
					Color = {214, 214, 220};
				}
				Polygons = SimViewportShapePolygons(ESimulatedMeshShape::Box, Bounds);
			}
			for (const std::vector<FSimulatedVector>& Polygon : Polygons)
			{
				if (Polygon.size() < 3)
				{
					continue;
				}
				FSimulatedVector Normal = FSimulatedVector::Cross(Polygon[1] - Polygon[0], Polygon[2] - Polygon[0]);
				const double NormalSize = Normal.Size();
				const double Light = NormalSize > 1e-9 ? std::fabs(FSimulatedVector::Dot(Normal, LightDirection)) / NormalSize : 0.5;
				const double Shade = 0.45 + 0.55 * Light;
				const FSimViewportColor Shaded = {(uint8)(Color.R * Shade), (uint8)(Color.G * Shade), (uint8)(Color.B * Shade)};
				std::vector<FSimViewportVertex> ViewPolygon;
				for (const FSimulatedVector& Point : Polygon)
				{
					ViewPolygon.push_back(Camera.ToView(Point));
				}
				ViewPolygon = SimViewportClipNear(ViewPolygon, Camera.bPerspective);
				if (ViewPolygon.size() < 3)
				{
					continue;
				}
				std::vector<double> PixelX(ViewPolygon.size());
				std::vector<double> PixelY(ViewPolygon.size());
				for (size_t Index = 0; Index < ViewPolygon.size(); ++Index)
				{
					Camera.ToPixel(ViewPolygon[Index], PixelX[Index], PixelY[Index]);
				}
				for (size_t Index = 1; Index + 1 < ViewPolygon.size(); ++Index)
				{
					const double X[3] = {PixelX[0], PixelX[Index], PixelX[Index + 1]};
					const double Y[3] = {PixelY[0], PixelY[Index], PixelY[Index + 1]};
					const double Z[3] = {ViewPolygon[0].Z, ViewPolygon[Index].Z, ViewPolygon[Index + 1].Z};
					SimViewportFillTriangle(Canvas, X, Y, Z, Shaded, ActorId);
				}
			}
		}
	}

	for (const FWireframe& Wireframe : Wireframes)
	{
		const FSimulatedVector& A = Wireframe.LocalBounds.Min;
		const FSimulatedVector& B = Wireframe.LocalBounds.Max;
		FSimulatedVector Corners[8] = {{A.X, A.Y, A.Z}, {B.X, A.Y, A.Z}, {B.X, B.Y, A.Z}, {A.X, B.Y, A.Z}, {A.X, A.Y, B.Z}, {B.X, A.Y, B.Z}, {B.X, B.Y, B.Z}, {A.X, B.Y, B.Z}};
		for (FSimulatedVector& Corner : Corners)
		{
			Corner = Wireframe.ComponentToWorld.TransformPosition(Corner);
		}
		SimViewportDrawBoxEdges(Canvas, Camera, Corners, FSimViewportColor{110, 200, 230});
	}

	// Selection: a two-pixel orange outline around what selected actors cover, and their
	// bounds box as a wireframe.
	std::vector<bool> SelectedIds(Actors.size() + 1, false);
	for (size_t ActorIndex = 0; ActorIndex < Actors.size(); ++ActorIndex)
	{
		SelectedIds[ActorIndex + 1] = World.IsSelected(*Actors[ActorIndex]);
	}
	std::vector<FSimViewportColor> Outlined = Canvas.Colors;
	for (int32 Y = 0; Y < Height; ++Y)
	{
		for (int32 X = 0; X < Width; ++X)
		{
			const int32 Id = Canvas.ActorIds[(size_t)Y * Width + X];
			if (!SelectedIds[(size_t)Id])
			{
				continue;
			}
			bool bEdge = false;
			for (int32 DY = -2; DY <= 2 && !bEdge; ++DY)
			{
				for (int32 DX = -2; DX <= 2 && !bEdge; ++DX)
				{
					const int32 NX = X + DX;
					const int32 NY = Y + DY;
					bEdge = NX < 0 || NY < 0 || NX >= Width || NY >= Height || Canvas.ActorIds[(size_t)NY * Width + NX] != Id;
				}
			}
			if (bEdge)
			{
				Outlined[(size_t)Y * Width + X] = SimViewportSelectionColor;
			}
		}
	}
	Canvas.Colors = std::move(Outlined);
	for (size_t ActorIndex = 0; ActorIndex < Actors.size(); ++ActorIndex)
	{
		if (!SelectedIds[ActorIndex + 1])
		{
			continue;
		}
		const FSimulatedBox Bounds = World.GetActorBounds(*Actors[ActorIndex]);
		if (!Bounds.bIsValid)
		{
			continue;
		}
		const FSimulatedVector& A = Bounds.Min;
		const FSimulatedVector& B = Bounds.Max;
		const FSimulatedVector Corners[8] = {{A.X, A.Y, A.Z}, {B.X, A.Y, A.Z}, {B.X, B.Y, A.Z}, {A.X, B.Y, A.Z}, {A.X, A.Y, B.Z}, {B.X, A.Y, B.Z}, {B.X, B.Y, B.Z}, {A.X, B.Y, B.Z}};
		SimViewportDrawBoxEdges(Canvas, Camera, Corners, SimViewportBoundsColor);
	}

	OutPixels.resize((size_t)Width * Height * 4);
	for (size_t Index = 0; Index < Canvas.Colors.size(); ++Index)
	{
		OutPixels[Index * 4 + 0] = Canvas.Colors[Index].B;
		OutPixels[Index * 4 + 1] = Canvas.Colors[Index].G;
		OutPixels[Index * 4 + 2] = Canvas.Colors[Index].R;
		OutPixels[Index * 4 + 3] = 255;
	}
}
