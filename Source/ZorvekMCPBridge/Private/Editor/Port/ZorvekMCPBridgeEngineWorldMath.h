// The world port's plain vectors, rotators, transforms and boxes to and from the engine's math
// types. The engine does the arithmetic: a transform's rotation is read back through
// FQuat::Rotator, so world rotations come out normalised as the editor shows them.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"
#include "Math/Box.h"
#include "Math/Quat.h"
#include "Math/Rotator.h"
#include "Math/Transform.h"
#include "Math/Vector.h"

namespace ZorvekMCPBridgeEngineWorldMath
{
	inline FVector ToEngine(const FZorvekMCPBridgeVector& Vector)
	{
		return FVector(Vector.X, Vector.Y, Vector.Z);
	}

	inline FRotator ToEngine(const FZorvekMCPBridgeRotator& Rotator)
	{
		return FRotator(Rotator.Pitch, Rotator.Yaw, Rotator.Roll);
	}

	// FTransform(Rotation.Quaternion(), Location, Scale).
	inline FTransform ToEngine(const FZorvekMCPBridgeTransform& Transform)
	{
		return FTransform(ToEngine(Transform.Rotation).Quaternion(), ToEngine(Transform.Location), ToEngine(Transform.Scale));
	}

	// An invalid port box becomes FBox(ForceInit), the engine's empty box.
	inline FBox ToEngine(const FZorvekMCPBridgeBox& Box)
	{
		return Box.bIsValid ? FBox(ToEngine(Box.Min), ToEngine(Box.Max)) : FBox(ForceInit);
	}

	inline FZorvekMCPBridgeVector FromEngine(const FVector& Vector)
	{
		FZorvekMCPBridgeVector Result;
		Result.X = Vector.X;
		Result.Y = Vector.Y;
		Result.Z = Vector.Z;
		return Result;
	}

	inline FZorvekMCPBridgeRotator FromEngine(const FRotator& Rotator)
	{
		FZorvekMCPBridgeRotator Result;
		Result.Pitch = Rotator.Pitch;
		Result.Yaw = Rotator.Yaw;
		Result.Roll = Rotator.Roll;
		return Result;
	}

	inline FZorvekMCPBridgeTransform FromEngine(const FTransform& Transform)
	{
		FZorvekMCPBridgeTransform Result;
		Result.Location = FromEngine(Transform.GetLocation());
		Result.Rotation = FromEngine(Transform.GetRotation().Rotator());
		Result.Scale = FromEngine(Transform.GetScale3D());
		return Result;
	}

	inline FZorvekMCPBridgeBox FromEngine(const FBox& Box)
	{
		FZorvekMCPBridgeBox Result;
		Result.Min = FromEngine(Box.Min);
		Result.Max = FromEngine(Box.Max);
		Result.bIsValid = Box.IsValid != 0;
		return Result;
	}
}
