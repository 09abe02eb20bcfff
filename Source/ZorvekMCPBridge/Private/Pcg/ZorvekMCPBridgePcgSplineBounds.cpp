#include "Pcg/ZorvekMCPBridgePcgSplineBounds.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

// USplineComponent and its UFUNCTIONs are not in the reference notes; check against the engine:
// SetSplinePoints(const TArray<FVector>& Points, ESplineCoordinateSpace::Type CoordinateSpace,
// bool bUpdateSpline), SetSplinePointType(int32 PointIndex, ESplinePointType::Type Type, bool
// bUpdateSpline), SetClosedLoop(bool bInClosedLoop, bool bUpdateSpline), GetNumberOfSplinePoints(),
// IsClosedLoop(), GetSplineLength() (float) and GetLocationAtSplinePoint(int32 PointIndex,
// ESplineCoordinateSpace::Type CoordinateSpace) (FVector). The two enums are byte enums
// (TEnumAsByte): ESplineCoordinateSpace Local = 0, World = 1; ESplinePointType Linear = 0.
namespace
{
	constexpr int32 SplineBoundsLocalSpace = 0;
	constexpr int32 SplineBoundsWorldSpace = 1;
	constexpr int32 SplineBoundsLinearPoint = 0;

	struct FSplineBoundsInput
	{
		const TCHAR* Name;
		TSharedPtr<FJsonValue> Value;
	};

	// Calls the component's function with the named inputs (the others keep their zeroed
	// defaults); OutReturn gets the return value when asked for.
	bool CallSplineBoundsFunction(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, const TCHAR* FunctionName,
		std::initializer_list<FSplineBoundsInput> Inputs, TSharedPtr<FJsonValue>* OutReturn, FString& OutError)
	{
		if (!Component.IsValid())
		{
			OutError = TEXT("Spline component was invalid.");
			return false;
		}
		IZorvekMCPBridgeFunctions& Functions = Port.GetFunctions();
		const FString ClassPath = Port.GetObjects().GetClassInfo(Component).Path;
		FZorvekMCPBridgeFunctionInfo Function;
		TUniquePtr<IZorvekMCPBridgeParameterBlock> Block;
		if (Functions.FindFunction(ClassPath, FunctionName, TArray<FString>(), Function))
		{
			Block = Functions.CreateParameterBlock(ClassPath, Function.Name);
		}
		if (!Block.IsValid())
		{
			OutError = FString::Printf(TEXT("Spline component did not expose %s."), FunctionName);
			return false;
		}
		for (const FSplineBoundsInput& Input : Inputs)
		{
			const int32 Index = Function.Parameters.IndexOfByPredicate([&Input](const FZorvekMCPBridgeFieldInfo& Parameter)
			{
				return Parameter.Name.Equals(Input.Name, ESearchCase::IgnoreCase);
			});
			if (Index == INDEX_NONE || !Block->ImportJsonValue(Index, Input.Value))
			{
				OutError = FString::Printf(TEXT("Spline component's %s did not take its %s parameter."), FunctionName, Input.Name);
				return false;
			}
		}
		Functions.CallFunction(Component, *Block);
		if (OutReturn)
		{
			const int32 ReturnIndex = Function.Parameters.IndexOfByPredicate([](const FZorvekMCPBridgeFieldInfo& Parameter)
			{
				return (Parameter.Flags & ZorvekMCPBridgeParameterFlags::ReturnParm) != 0;
			});
			*OutReturn = ReturnIndex == INDEX_NONE ? nullptr : Block->ExportJsonValue(ReturnIndex);
			if (!OutReturn->IsValid())
			{
				OutError = FString::Printf(TEXT("Spline component's %s returned nothing readable."), FunctionName);
				return false;
			}
		}
		return true;
	}

	TSharedPtr<FJsonValue> SplineBoundsNumber(double Value)
	{
		return MakeShared<FJsonValueNumber>(Value);
	}

	TSharedPtr<FJsonValue> SplineBoundsBool(bool bValue)
	{
		return MakeShared<FJsonValueBoolean>(bValue);
	}

	// FJsonObjectConverter writes a vector as {"x","y","z"} and reads its fields without regard to case.
	TSharedPtr<FJsonValue> SplineBoundsVector(const FZorvekMCPBridgeVector& Vector)
	{
		TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
		Object->SetNumberField(TEXT("X"), Vector.X);
		Object->SetNumberField(TEXT("Y"), Vector.Y);
		Object->SetNumberField(TEXT("Z"), Vector.Z);
		return MakeShared<FJsonValueObject>(Object);
	}

	bool ReadSplineBoundsVector(const TSharedPtr<FJsonValue>& Value, FZorvekMCPBridgeVector& OutVector)
	{
		const TSharedPtr<FJsonObject>* Object = nullptr;
		return Value.IsValid() && Value->TryGetObject(Object) && (*Object)->TryGetNumberField(TEXT("X"), OutVector.X)
			&& (*Object)->TryGetNumberField(TEXT("Y"), OutVector.Y) && (*Object)->TryGetNumberField(TEXT("Z"), OutVector.Z);
	}
}

TArray<FZorvekMCPBridgeVector> ZorvekMCPBridgePcgSplineBounds::MakeRectanglePoints(const FRectangle& Rectangle)
{
	const double HalfLength = Rectangle.Length * 0.5;
	const double HalfWidth = Rectangle.Width * 0.5;
	return {
		{-HalfLength, -HalfWidth, 0.0},
		{HalfLength, -HalfWidth, 0.0},
		{HalfLength, HalfWidth, 0.0},
		{-HalfLength, HalfWidth, 0.0},
	};
}

FZorvekMCPBridgeObjectHandle ZorvekMCPBridgePcgSplineBounds::FindSplineComponent(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeActorSnapshot& Actor)
{
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	FZorvekMCPBridgeTypeInfo SplineClass;
	if (!Objects.LoadClass(SplineComponentClassPath, SplineClass))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	for (const FZorvekMCPBridgeActorComponentSnapshot& Component : Actor.Components)
	{
		if (Objects.IsA(Component.Component, SplineClass.Path))
		{
			return Component.Component;
		}
	}
	return FZorvekMCPBridgeObjectHandle();
}

bool ZorvekMCPBridgePcgSplineBounds::WriteRectangle(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, const FRectangle& Rectangle, FString& OutError)
{
	// Every function is looked up before the first call, so a missing one changes nothing.
	const FString ClassPath = Port.GetObjects().GetClassInfo(Component).Path;
	for (const TCHAR* FunctionName : {TEXT("SetSplinePoints"), TEXT("SetSplinePointType"), TEXT("SetClosedLoop")})
	{
		FZorvekMCPBridgeFunctionInfo Function;
		if (Component.IsValid() && !Port.GetFunctions().FindFunction(ClassPath, FunctionName, TArray<FString>(), Function))
		{
			OutError = FString::Printf(TEXT("Spline component did not expose %s."), FunctionName);
			return false;
		}
	}
	TArray<TSharedPtr<FJsonValue>> Points;
	for (const FZorvekMCPBridgeVector& Point : MakeRectanglePoints(Rectangle))
	{
		Points.Add(SplineBoundsVector(Point));
	}
	// New points are curves; the rectangle's corners must be sharp, so each is made linear. The
	// spline is rebuilt once, by the last call.
	if (!CallSplineBoundsFunction(Port, Component, TEXT("SetSplinePoints"),
			{{TEXT("Points"), MakeShared<FJsonValueArray>(Points)}, {TEXT("CoordinateSpace"), SplineBoundsNumber(SplineBoundsLocalSpace)}, {TEXT("bUpdateSpline"), SplineBoundsBool(false)}},
			nullptr, OutError))
	{
		return false;
	}
	for (int32 Index = 0; Index < RectanglePointCount; ++Index)
	{
		if (!CallSplineBoundsFunction(Port, Component, TEXT("SetSplinePointType"),
				{{TEXT("PointIndex"), SplineBoundsNumber(Index)}, {TEXT("Type"), SplineBoundsNumber(SplineBoundsLinearPoint)}, {TEXT("bUpdateSpline"), SplineBoundsBool(false)}},
				nullptr, OutError))
		{
			return false;
		}
	}
	return CallSplineBoundsFunction(Port, Component, TEXT("SetClosedLoop"), {{TEXT("bInClosedLoop"), SplineBoundsBool(true)}, {TEXT("bUpdateSpline"), SplineBoundsBool(true)}}, nullptr, OutError);
}

bool ZorvekMCPBridgePcgSplineBounds::ReadSpline(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, FSplineState& OutState, FString& OutError)
{
	OutState = FSplineState();
	TSharedPtr<FJsonValue> Value;
	double Number = 0.0;
	if (!CallSplineBoundsFunction(Port, Component, TEXT("GetNumberOfSplinePoints"), {}, &Value, OutError) || !Value->TryGetNumber(Number))
	{
		OutError = OutError.IsEmpty() ? TEXT("Spline component's GetNumberOfSplinePoints returned nothing readable.") : OutError;
		return false;
	}
	OutState.PointCount = (int32)Number;
	if (!CallSplineBoundsFunction(Port, Component, TEXT("IsClosedLoop"), {}, &Value, OutError) || !Value->TryGetBool(OutState.bClosedLoop))
	{
		OutError = OutError.IsEmpty() ? TEXT("Spline component's IsClosedLoop returned nothing readable.") : OutError;
		return false;
	}
	if (!CallSplineBoundsFunction(Port, Component, TEXT("GetSplineLength"), {}, &Value, OutError) || !Value->TryGetNumber(OutState.SplineLength))
	{
		OutError = OutError.IsEmpty() ? TEXT("Spline component's GetSplineLength returned nothing readable.") : OutError;
		return false;
	}
	for (int32 Index = 0; Index < OutState.PointCount; ++Index)
	{
		FZorvekMCPBridgeVector Local;
		FZorvekMCPBridgeVector World;
		TSharedPtr<FJsonValue> WorldValue;
		if (!CallSplineBoundsFunction(Port, Component, TEXT("GetLocationAtSplinePoint"), {{TEXT("PointIndex"), SplineBoundsNumber(Index)}, {TEXT("CoordinateSpace"), SplineBoundsNumber(SplineBoundsLocalSpace)}}, &Value, OutError)
			|| !CallSplineBoundsFunction(Port, Component, TEXT("GetLocationAtSplinePoint"), {{TEXT("PointIndex"), SplineBoundsNumber(Index)}, {TEXT("CoordinateSpace"), SplineBoundsNumber(SplineBoundsWorldSpace)}}, &WorldValue, OutError)
			|| !ReadSplineBoundsVector(Value, Local) || !ReadSplineBoundsVector(WorldValue, World))
		{
			OutError = OutError.IsEmpty() ? TEXT("Spline component's GetLocationAtSplinePoint returned nothing readable.") : OutError;
			return false;
		}
		OutState.LocalPoints.Add(Local);
		OutState.WorldPoints.Add(World);
	}
	return true;
}

ZorvekMCPBridgePcgSplineBounds::FRectangle ZorvekMCPBridgePcgSplineBounds::MeasureRectangle(const FSplineState& State)
{
	FRectangle Rectangle;
	Rectangle.Length = 0.0;
	Rectangle.Width = 0.0;
	if (State.LocalPoints.Num() == 0)
	{
		return Rectangle;
	}
	FZorvekMCPBridgeVector Min = State.LocalPoints[0];
	FZorvekMCPBridgeVector Max = State.LocalPoints[0];
	for (const FZorvekMCPBridgeVector& Point : State.LocalPoints)
	{
		Min.X = FMath::Min(Min.X, Point.X);
		Min.Y = FMath::Min(Min.Y, Point.Y);
		Max.X = FMath::Max(Max.X, Point.X);
		Max.Y = FMath::Max(Max.Y, Point.Y);
	}
	Rectangle.Length = Max.X - Min.X;
	Rectangle.Width = Max.Y - Min.Y;
	return Rectangle;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgSplineBounds::MakeSplineBoundsJson(const FString& InComponentName, const FSplineState& State)
{
	using ZorvekMCPBridgeActorReadback::MakeVectorJson;
	TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("component_name"), InComponentName);
	Object->SetNumberField(TEXT("point_count"), State.PointCount);
	Object->SetBoolField(TEXT("closed_loop"), State.bClosedLoop);
	Object->SetNumberField(TEXT("spline_length"), State.SplineLength);
	const FRectangle Rectangle = MeasureRectangle(State);
	TSharedPtr<FJsonObject> RectangleJson = MakeShared<FJsonObject>();
	RectangleJson->SetNumberField(TEXT("length"), Rectangle.Length);
	RectangleJson->SetNumberField(TEXT("width"), Rectangle.Width);
	Object->SetObjectField(TEXT("rectangle"), RectangleJson);

	TArray<TSharedPtr<FJsonValue>> Points;
	FZorvekMCPBridgeBox WorldBox;
	for (int32 Index = 0; Index < State.LocalPoints.Num() && Index < State.WorldPoints.Num(); ++Index)
	{
		TSharedPtr<FJsonObject> Point = MakeShared<FJsonObject>();
		Point->SetNumberField(TEXT("index"), Index);
		Point->SetObjectField(TEXT("local"), MakeVectorJson(State.LocalPoints[Index]));
		Point->SetObjectField(TEXT("world"), MakeVectorJson(State.WorldPoints[Index]));
		Points.Add(MakeShared<FJsonValueObject>(Point));
		const FZorvekMCPBridgeVector& World = State.WorldPoints[Index];
		if (!WorldBox.bIsValid)
		{
			WorldBox.Min = World;
			WorldBox.Max = World;
			WorldBox.bIsValid = true;
		}
		WorldBox.Min = {FMath::Min(WorldBox.Min.X, World.X), FMath::Min(WorldBox.Min.Y, World.Y), FMath::Min(WorldBox.Min.Z, World.Z)};
		WorldBox.Max = {FMath::Max(WorldBox.Max.X, World.X), FMath::Max(WorldBox.Max.Y, World.Y), FMath::Max(WorldBox.Max.Z, World.Z)};
	}
	Object->SetArrayField(TEXT("points"), Points);
	Object->SetObjectField(TEXT("world_bounds"), ZorvekMCPBridgeActorReadback::MakeBoundsJson(WorldBox));
	return Object;
}
