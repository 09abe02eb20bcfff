// The fixture of the editor world tool tests: the sample project with its level, tool calls
// through the server, and a description of the level to compare before and after a refused call.
#pragma once

#include "AssetTestSupport.h"
#include "SimulatedWorldPort.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

#include <cmath>
#include <limits>
#include <sstream>

namespace ZorvekEditorWorldTests
{
	using namespace ZorvekAssetTests;

	inline TSharedPtr<FJsonValue> Bool(bool bValue)
	{
		return MakeShared<FJsonValueBoolean>(bValue);
	}

	inline TSharedPtr<FJsonValue> Object(const TSharedPtr<FJsonObject>& Value)
	{
		return MakeShared<FJsonValueObject>(Value);
	}

	inline std::vector<std::string> Keys(const TSharedPtr<FJsonObject>& Object)
	{
		std::vector<std::string> Names;
		for (const auto& Field : Object->Values)
		{
			Names.push_back(S(Field.Key));
		}
		return Names;
	}

	inline std::vector<std::string> Strings(const TArray<TSharedPtr<FJsonValue>>& Values)
	{
		std::vector<std::string> Result;
		for (const TSharedPtr<FJsonValue>& Value : Values)
		{
			Result.push_back(S(Value->AsString()));
		}
		return Result;
	}

	// "x y z" of a vector object, rounded to 1e-3 so readbacks from quaternions compare.
	inline std::string Vec(const TSharedPtr<FJsonObject>& Vector, const TCHAR* A = TEXT("x"), const TCHAR* B = TEXT("y"), const TCHAR* C = TEXT("z"))
	{
		std::ostringstream Out;
		const auto Round = [](double Value)
		{
			const double Rounded = std::round(Value * 1000.0) / 1000.0;
			return Rounded == 0.0 ? 0.0 : Rounded;
		};
		Out << Round(Vector->GetNumberField(A)) << " " << Round(Vector->GetNumberField(B)) << " " << Round(Vector->GetNumberField(C));
		return Out.str();
	}

	inline std::string Location(const TSharedPtr<FJsonObject>& Transform)
	{
		return Vec(Transform->GetObjectField(TEXT("location")));
	}

	inline std::string Rotation(const TSharedPtr<FJsonObject>& Transform)
	{
		return Vec(Transform->GetObjectField(TEXT("rotation")), TEXT("pitch"), TEXT("yaw"), TEXT("roll"));
	}

	inline std::string Scale(const TSharedPtr<FJsonObject>& Transform)
	{
		return Vec(Transform->GetObjectField(TEXT("scale")));
	}

	class FEditorWorldToolsTest : public ::testing::Test
	{
	protected:
		void SetUp() override
		{
			Port = LoadSampleProject();
			ASSERT_TRUE(Port.IsValid());
			Runner = MakeUnique<FToolRunner>(Port);
		}

		TSharedPtr<FJsonObject> Call(const TCHAR* Tool, const TSharedPtr<FJsonObject>& Args = MakeShared<FJsonObject>())
		{
			return Runner->Call(Tool, Args);
		}

		IZorvekMCPBridgeWorld& World() const
		{
			return Port->GetWorld();
		}

		// The payload of a successful call.
		static TSharedPtr<FJsonObject> Ok(const TSharedPtr<FJsonObject>& Result)
		{
			const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
			EXPECT_FALSE(FToolRunner::IsError(Result)) << (Payload.IsValid() ? S(Payload->GetStringField(TEXT("error"))) : std::string("no payload"));
			return Payload.IsValid() ? Payload : MakeShared<FJsonObject>();
		}

		// The payload of a refused call, marked as a tool error.
		static TSharedPtr<FJsonObject> Refused(const TSharedPtr<FJsonObject>& Result)
		{
			EXPECT_TRUE(FToolRunner::IsError(Result));
			const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
			EXPECT_TRUE(Payload.IsValid()) << "a refusal without a structured payload";
			return Payload.IsValid() ? Payload : MakeShared<FJsonObject>();
		}

		static std::string Error(const TSharedPtr<FJsonObject>& Result)
		{
			return S(Refused(Result)->GetStringField(TEXT("error")));
		}

		TSharedPtr<FJsonObject> Place(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			if (!Args->HasField(TEXT("AllowCurrentLevel")))
			{
				Args->SetBoolField(TEXT("AllowCurrentLevel"), true);
			}
			return Call(TEXT("editor_place_actor"), Args);
		}

		// Places an actor and answers its readback.
		TSharedPtr<FJsonObject> PlaceOk(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			return Ok(Place(Fields))->GetObjectField(TEXT("actor"));
		}

		// The readback of one actor, found as the tools find actors.
		TSharedPtr<FJsonObject> Readback(const TCHAR* NameOrLabel) const
		{
			FZorvekMCPBridgeActorEntry Entry;
			EXPECT_TRUE(ZorvekMCPBridgeActorReadback::FindActor(World(), NameOrLabel, Entry)) << S(NameOrLabel);
			const TSharedPtr<FJsonObject> Json = ZorvekMCPBridgeActorReadback::ReadActorReadback(World(), Entry.Actor, false);
			return Json.IsValid() ? Json : MakeShared<FJsonObject>();
		}

		TArray<FString> LevelLabels() const
		{
			TArray<FString> Labels;
			for (const FZorvekMCPBridgeActorEntry& Actor : World().GetAllLevelActors())
			{
				Labels.Add(Actor.Label);
			}
			return Labels;
		}

		TArray<FString> SelectedLabels() const
		{
			TArray<FString> Labels;
			for (const FZorvekMCPBridgeObjectHandle& Actor : World().GetSelectedLevelActors())
			{
				FZorvekMCPBridgeActorSnapshot Snapshot;
				EXPECT_TRUE(World().ReadActor(Actor, Snapshot));
				Labels.Add(Snapshot.Entry.Label);
			}
			return Labels;
		}

		// Everything the world tools can change: every actor's names, tags, transforms of all its
		// components, and the selection.
		std::string DescribeLevel() const
		{
			std::ostringstream Out;
			for (const FZorvekMCPBridgeActorEntry& Actor : World().GetAllLevelActors())
			{
				FZorvekMCPBridgeActorSnapshot Snapshot;
				EXPECT_TRUE(World().ReadActor(Actor.Actor, Snapshot));
				const TSharedPtr<FJsonObject> Json = ZorvekMCPBridgeActorReadback::MakeActorReadback(Snapshot, false);
				Out << S(Actor.Name) << "|" << S(Actor.Label) << "|" << Location(Json->GetObjectField(TEXT("transform")))
					<< "|" << Rotation(Json->GetObjectField(TEXT("transform"))) << "|" << Scale(Json->GetObjectField(TEXT("transform")));
				for (const FName& Tag : Actor.Tags)
				{
					Out << "|" << S(Tag.ToString());
				}
				for (const TSharedPtr<FJsonValue>& Component : Json->GetArrayField(TEXT("components")))
				{
					const TSharedPtr<FJsonObject> Relative = Component->AsObject()->GetObjectField(TEXT("relative_transform"));
					Out << "|" << S(Component->AsObject()->GetStringField(TEXT("name"))) << "@" << Location(Relative) << "/" << Rotation(Relative) << "/" << Scale(Relative);
				}
				Out << "\n";
			}
			for (const FString& Label : SelectedLabels())
			{
				Out << "selected " << S(Label) << "\n";
			}
			return Out.str();
		}

		// The call is refused with the message and the level reads back as before.
		void ExpectRefusedUnchanged(const TCHAR* Tool, const TSharedPtr<FJsonObject>& Args, const std::string& Message)
		{
			const std::string Before = DescribeLevel();
			EXPECT_EQ(Error(Call(Tool, Args)), Message);
			EXPECT_EQ(DescribeLevel(), Before);
		}

		TSharedPtr<FSimulatedEditorPort> Port;
		TUniquePtr<FToolRunner> Runner;
	};
}
