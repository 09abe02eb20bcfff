#include "SimulatedWorldSpline.h"

#include "SimulatedEditor.h"
#include "SimulatedFunctions.h"
#include "SimulatedWorld.h"

#include <algorithm>
#include <cmath>

// USplineComponent is not in the reference notes; its UFUNCTION signatures, its two default
// points and its bounds (the box of its curve) are the engine's as the tools' comments give them;
// check against the engine.
const TCHAR* const SimulatedWorldSpline::SplineComponentClassPath = TEXT("/Script/Engine.SplineComponent");

namespace
{
	const TCHAR* const SimSplinePrimitiveComponentClassPath = TEXT("/Script/Engine.PrimitiveComponent");
	const TCHAR* const SimSplineCoordinateSpaceEnumPath = TEXT("/Script/Engine.ESplineCoordinateSpace");
	const TCHAR* const SimSplinePointTypeEnumPath = TEXT("/Script/Engine.ESplinePointType");
	constexpr int64 SimSplineWorldSpace = 1;
	// Steps per curve segment when its length is summed.
	constexpr int32 SimSplineCurveSteps = 256;

	FSimulatedVector SimSplineReadVector(const FSimulatedValue& Value)
	{
		return Value.Items.size() >= 3 ? FSimulatedVector(Value.Items[0].Real, Value.Items[1].Real, Value.Items[2].Real) : FSimulatedVector();
	}

	void SimSplineWriteVector(FSimulatedValue& Value, const FSimulatedVector& Vector)
	{
		Value.Items.resize(3);
		Value.Items[0].Real = Vector.X;
		Value.Items[1].Real = Vector.Y;
		Value.Items[2].Real = Vector.Z;
	}

	// FTransform::InverseTransformPosition: translation undone, rotation undone, scale divided out.
	FSimulatedVector SimSplineInverseTransformPosition(const FSimulatedTransform& Transform, const FSimulatedVector& Position)
	{
		const FSimulatedVector Unrotated = Transform.Rotation.Inverse().RotateVector(Position - Transform.Translation);
		const auto SafeDivide = [](double Value, double Scale)
		{
			return Scale == 0.0 ? 0.0 : Value / Scale;
		};
		return {SafeDivide(Unrotated.X, Transform.Scale3D.X), SafeDivide(Unrotated.Y, Transform.Scale3D.Y), SafeDivide(Unrotated.Z, Transform.Scale3D.Z)};
	}

	// The automatic tangent at a point: half the span between its neighbours (the ends of an open
	// spline use their one neighbour).
	FSimulatedVector SimSplineTangent(const FSimulatedSplineState& State, int32 Index)
	{
		const int32 Count = (int32)State.Points.size();
		int32 Previous = Index - 1;
		int32 Next = Index + 1;
		if (State.bClosedLoop)
		{
			Previous = (Previous + Count) % Count;
			Next = Next % Count;
		}
		else
		{
			Previous = std::max(Previous, 0);
			Next = std::min(Next, Count - 1);
		}
		const double Factor = (Next - Previous == 2 || State.bClosedLoop) ? 0.5 : 1.0;
		return (State.Points[Next] - State.Points[Previous]) * Factor;
	}
}

FSimulatedSplines::FSimulatedSplines(FSimulatedWorld& InWorld)
	: World(InWorld)
{
}

void FSimulatedSplines::RegisterClass(FSimulatedEditor& Editor)
{
	if (Editor.FindTypeByPath(SimulatedWorldSpline::SplineComponentClassPath) || !Editor.FindTypeByPath(SimSplinePrimitiveComponentClassPath))
	{
		return;
	}
	using namespace SimulatedFunctionFlags;
	using namespace SimulatedParameterFlags;
	FString Error;
	// Namespaced byte enums (TEnumAsByte<ESplineCoordinateSpace::Type>).
	Editor.AddEnum(SimSplineCoordinateSpaceEnumPath, {TEXT("Local"), TEXT("World")}, false, Error);
	Editor.AddEnum(SimSplinePointTypeEnumPath, {TEXT("Linear"), TEXT("Curve"), TEXT("Constant"), TEXT("CurveClamped"), TEXT("CurveCustomTangent")}, false, Error);
	FSimulatedType* Class = Editor.AddClass(SimulatedWorldSpline::SplineComponentClassPath, SimSplinePrimitiveComponentClassPath, 0, Error);
	if (!Class)
	{
		return;
	}
	const uint32 Callable = Public | Native | BlueprintCallable;
	const uint32 PureConst = Public | Native | BlueprintCallable | BlueprintPure | Const;
	const FString CoordinateSpace = FString(TEXT("enum:")) + SimSplineCoordinateSpaceEnumPath;
	const FString PointType = FString(TEXT("enum:")) + SimSplinePointTypeEnumPath;

	SimulatedVessa::AddFunction(Editor, Class, TEXT("SetSplinePoints"), Callable,
		{{TEXT("Points"), TEXT("array:struct:/Script/CoreUObject.Vector"), OutParm | ReferenceParm | ConstParm}, {TEXT("CoordinateSpace"), *CoordinateSpace, 0}, {TEXT("bUpdateSpline"), TEXT("bool"), 0}},
		{{TEXT("CPP_Default_bUpdateSpline"), TEXT("true")}},
		[this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
		{
			FSimulatedSplineState& State = StateOf(Self);
			const FSimulatedComponent* Component = FindComponent(Self);
			const FSimulatedTransform ToWorld = Component ? World.GetComponentToWorld(*Component) : FSimulatedTransform();
			State.Points.clear();
			for (const FSimulatedValue& Item : Values[0].Items)
			{
				const FSimulatedVector Point = SimSplineReadVector(Item);
				State.Points.push_back(Values[1].Integer == SimSplineWorldSpace ? SimSplineInverseTransformPosition(ToWorld, Point) : Point);
			}
			State.PointTypes.assign(State.Points.size(), SimulatedWorldSpline::CurvePoint);
			UpdateBounds(Self);
		});
	SimulatedVessa::AddFunction(Editor, Class, TEXT("SetSplinePointType"), Callable,
		{{TEXT("PointIndex"), TEXT("int32"), 0}, {TEXT("Type"), *PointType, 0}, {TEXT("bUpdateSpline"), TEXT("bool"), 0}},
		{{TEXT("CPP_Default_bUpdateSpline"), TEXT("true")}},
		[this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
		{
			// An index beyond the points changes nothing.
			FSimulatedSplineState& State = StateOf(Self);
			const int64 Index = Values[0].Integer;
			if (Index >= 0 && Index < (int64)State.PointTypes.size())
			{
				State.PointTypes[(size_t)Index] = (uint8)Values[1].Integer;
			}
		});
	SimulatedVessa::AddFunction(Editor, Class, TEXT("SetClosedLoop"), Callable,
		{{TEXT("bInClosedLoop"), TEXT("bool"), 0}, {TEXT("bUpdateSpline"), TEXT("bool"), 0}},
		{{TEXT("CPP_Default_bUpdateSpline"), TEXT("true")}},
		[this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
		{
			StateOf(Self).bClosedLoop = Values[0].Bool;
		});
	SimulatedVessa::AddFunction(Editor, Class, TEXT("GetNumberOfSplinePoints"), PureConst,
		{{TEXT("ReturnValue"), TEXT("int32"), OutParm | ReturnParm}}, {},
		[this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
		{
			Values[0].Integer = (int64)StateOf(Self).Points.size();
		});
	SimulatedVessa::AddFunction(Editor, Class, TEXT("IsClosedLoop"), PureConst,
		{{TEXT("ReturnValue"), TEXT("bool"), OutParm | ReturnParm}}, {},
		[this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
		{
			Values[0].Bool = StateOf(Self).bClosedLoop;
		});
	SimulatedVessa::AddFunction(Editor, Class, TEXT("GetSplineLength"), PureConst,
		{{TEXT("ReturnValue"), TEXT("float"), OutParm | ReturnParm}}, {},
		[this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
		{
			Values[0].Real = (float)GetSplineLength(StateOf(Self));
		});
	SimulatedVessa::AddFunction(Editor, Class, TEXT("GetLocationAtSplinePoint"), PureConst,
		{{TEXT("PointIndex"), TEXT("int32"), 0}, {TEXT("CoordinateSpace"), *CoordinateSpace, 0}, {TEXT("ReturnValue"), TEXT("struct:/Script/CoreUObject.Vector"), OutParm | ReturnParm}}, {},
		[this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Values)
		{
			// The index is clamped to the points; an empty spline answers the origin.
			const FSimulatedSplineState& State = StateOf(Self);
			FSimulatedVector Point;
			if (!State.Points.empty())
			{
				const int64 Index = std::clamp<int64>(Values[0].Integer, 0, (int64)State.Points.size() - 1);
				Point = State.Points[(size_t)Index];
			}
			if (Values[1].Integer == SimSplineWorldSpace)
			{
				const FSimulatedComponent* Component = FindComponent(Self);
				Point = Component ? World.GetComponentToWorld(*Component).TransformPosition(Point) : Point;
			}
			SimSplineWriteVector(Values[2], Point);
		});
}

void FSimulatedSplines::OnComponentCreated(FSimulatedComponent& Component)
{
	FSimulatedSplineState& State = StateOf(*Component.Object);
	State.Points = {FSimulatedVector(0.0, 0.0, 0.0), FSimulatedVector(100.0, 0.0, 0.0)};
	State.PointTypes.assign(2, SimulatedWorldSpline::CurvePoint);
	State.bClosedLoop = false;
	Component.LocalBounds = FSimulatedBox(State.Points[0], State.Points[1]);
}

const FSimulatedSplineState* FSimulatedSplines::FindState(const FSimulatedObject* Component) const
{
	const auto Found = States.find(Component);
	return Found == States.end() ? nullptr : &Found->second;
}

double FSimulatedSplines::GetSplineLength(const FSimulatedSplineState& State) const
{
	const int32 Count = (int32)State.Points.size();
	const int32 Segments = State.bClosedLoop ? Count : Count - 1;
	double Length = 0.0;
	for (int32 Segment = 0; Segment < Segments && Count > 1; ++Segment)
	{
		const int32 Next = (Segment + 1) % Count;
		const FSimulatedVector& Start = State.Points[Segment];
		const FSimulatedVector& End = State.Points[Next];
		// A segment is straight when its start point is linear.
		if (State.PointTypes[Segment] == SimulatedWorldSpline::LinearPoint)
		{
			Length += (End - Start).Size();
			continue;
		}
		const FSimulatedVector StartTangent = SimSplineTangent(State, Segment);
		const FSimulatedVector EndTangent = SimSplineTangent(State, Next);
		FSimulatedVector Previous = Start;
		for (int32 Step = 1; Step <= SimSplineCurveSteps; ++Step)
		{
			const double T = (double)Step / SimSplineCurveSteps;
			const double T2 = T * T;
			const double T3 = T2 * T;
			const FSimulatedVector Point = Start * (2 * T3 - 3 * T2 + 1) + StartTangent * (T3 - 2 * T2 + T) + End * (-2 * T3 + 3 * T2) + EndTangent * (T3 - T2);
			Length += (Point - Previous).Size();
			Previous = Point;
		}
	}
	return Length;
}

FSimulatedSplineState& FSimulatedSplines::StateOf(FSimulatedObject& Component)
{
	return States[&Component];
}

void FSimulatedSplines::UpdateBounds(FSimulatedObject& Component)
{
	FSimulatedComponent* Owned = FindComponent(Component);
	const FSimulatedSplineState& State = StateOf(Component);
	if (!Owned)
	{
		return;
	}
	if (State.Points.empty())
	{
		Owned->LocalBounds = FSimulatedBox(FSimulatedVector(), FSimulatedVector());
		return;
	}
	FSimulatedVector Min = State.Points[0];
	FSimulatedVector Max = State.Points[0];
	for (const FSimulatedVector& Point : State.Points)
	{
		Min = {std::min(Min.X, Point.X), std::min(Min.Y, Point.Y), std::min(Min.Z, Point.Z)};
		Max = {std::max(Max.X, Point.X), std::max(Max.Y, Point.Y), std::max(Max.Z, Point.Z)};
	}
	Owned->LocalBounds = FSimulatedBox(Min, Max);
}

FSimulatedComponent* FSimulatedSplines::FindComponent(FSimulatedObject& Component) const
{
	FSimulatedActor* Owner = World.FindActor(Component.Outer);
	return Owner ? Owner->FindComponent(&Component) : nullptr;
}
