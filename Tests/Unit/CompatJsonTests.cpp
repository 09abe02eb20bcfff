// The Json module's reader and writer as the engine behaves: the endpoint's envelopes and the
// tools' text depend on these exact layouts and rules.
#include "ZorvekTestSupport.h"

#include "Serialization/JsonSerializer.h"

namespace
{
	FString PrettyText(const TSharedPtr<FJsonObject>& Object)
	{
		FString Text;
		FJsonSerializer::Serialize(Object.ToSharedRef(), TJsonWriterFactory<>::Create(&Text));
		return Text;
	}

	bool ParsesAsObject(const FString& Text)
	{
		TSharedPtr<FJsonObject> Object;
		return FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Object) && Object.IsValid();
	}
}

TEST(CompatJsonWriter, PrettyLayoutMatchesTheEngine)
{
	TSharedPtr<FJsonObject> Root = MakeShared<FJsonObject>();
	Root->SetNumberField(TEXT("a"), 1);
	Root->SetStringField(TEXT("b"), TEXT("x"));
	TSharedPtr<FJsonObject> Nested = MakeShared<FJsonObject>();
	Nested->SetBoolField(TEXT("k"), true);
	Root->SetObjectField(TEXT("o"), Nested);
	Root->SetObjectField(TEXT("e"), MakeShared<FJsonObject>());
	TSharedPtr<FJsonObject> WithNull = MakeShared<FJsonObject>();
	WithNull->SetField(TEXT("z"), MakeShared<FJsonValueNull>());
	Root->SetArrayField(TEXT("arr"), {
		MakeShared<FJsonValueNumber>(1),
		MakeShared<FJsonValueString>(TEXT("s")),
		MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>{MakeShared<FJsonValueNumber>(2)}),
		MakeShared<FJsonValueObject>(WithNull)});
	Root->SetArrayField(TEXT("ea"), {});

	const FString Expected = FString(TEXT("{\r\n\t\"a\": 1,\r\n\t\"b\": \"x\",\r\n\t\"o\":\r\n\t{\r\n\t\t\"k\": true\r\n\t},\r\n"))
		+ TEXT("\t\"e\":\r\n\t{\r\n\t},\r\n\t\"arr\": [\r\n\t\t1,\r\n\t\t\"s\",\r\n\t\t[\r\n\t\t\t2\r\n\t\t],\r\n")
		+ TEXT("\t\t{\r\n\t\t\t\"z\": null\r\n\t\t}\r\n\t],\r\n\t\"ea\": []\r\n}");
	EXPECT_EQ(PrettyText(Root), Expected);
	EXPECT_EQ(PrettyText(MakeShared<FJsonObject>()), FString(TEXT("{\r\n}")));
	EXPECT_EQ(ToCondensedJson(Root), FString(TEXT("{\"a\":1,\"b\":\"x\",\"o\":{\"k\":true},\"e\":{},\"arr\":[1,\"s\",[2],{\"z\":null}],\"ea\":[]}")));
}

TEST(CompatJsonWriter, NumbersAndStringsAreWrittenLikeTheEngine)
{
	TSharedPtr<FJsonObject> Root = MakeShared<FJsonObject>();
	Root->SetNumberField(TEXT("port"), 8765.0);
	Root->SetNumberField(TEXT("tenth"), 0.1);
	Root->SetNumberField(TEXT("big"), 1e17);
	Root->SetNumberField(TEXT("negzero"), -0.0);
	Root->SetStringField(TEXT("text"), FString(TEXT("q\"b\\s/\x1b\u00e9\n\t")));
	EXPECT_EQ(ToCondensedJson(Root), FString(TEXT("{\"port\":8765,\"tenth\":0.10000000000000001,\"big\":1e+17,\"negzero\":-0,\"text\":\"q\\\"b\\\\s/\\u001b\u00e9\\n\\t\"}")));
}

TEST(CompatJsonObject, KeysAreCaseInsensitiveAndKeepTheirPosition)
{
	// One key in any spelling, the later value and spelling winning (unreal-api-core.md §3.2);
	// the tools' lower-case legacy keys rely on it.
	TSharedPtr<FJsonObject> Object = ParseJsonObject(FString(TEXT("{\"Name\": 1, \"other\": 2, \"name\": 3}")));
	ASSERT_TRUE(Object.IsValid());
	EXPECT_EQ(Object->Values.Num(), 2);
	EXPECT_EQ(Object->GetNumberField(TEXT("NAME")), 3);
	EXPECT_EQ(ToCondensedJson(Object), FString(TEXT("{\"name\":3,\"other\":2}")));
}

TEST(CompatJsonObject, TryGettersCoerceAsTheEngineDoes)
{
	TSharedPtr<FJsonObject> Object = ParseJsonObject(FString(TEXT("{\"word\": \"abc\", \"num\": 8765, \"flag\": true, \"half\": 2.5, \"huge\": 1e20}")));
	ASSERT_TRUE(Object.IsValid());
	int32 Integer = -1;
	EXPECT_TRUE(Object->TryGetNumberField(TEXT("word"), Integer));
	EXPECT_EQ(Integer, 0);
	double Number = -1.0;
	EXPECT_FALSE(Object->TryGetNumberField(TEXT("word"), Number));
	FString Text;
	EXPECT_TRUE(Object->TryGetStringField(TEXT("num"), Text));
	EXPECT_TRUE(Text.Equals(TEXT("8765")));
	EXPECT_TRUE(Object->TryGetStringField(TEXT("flag"), Text));
	EXPECT_TRUE(Text.Equals(TEXT("true")));
	bool bFlag = false;
	EXPECT_TRUE(Object->TryGetBoolField(TEXT("num"), bFlag));
	EXPECT_TRUE(bFlag);
	EXPECT_TRUE(Object->TryGetNumberField(TEXT("half"), Integer));
	EXPECT_EQ(Integer, 3);
	EXPECT_FALSE(Object->TryGetNumberField(TEXT("huge"), Integer));
	EXPECT_FALSE(Object->TryGetStringField(TEXT("missing"), Text));
	EXPECT_FALSE(Object->HasTypedField<EJson::String>(TEXT("num")));
}

TEST(CompatJsonReader, AcceptsWhatTheEngineAccepts)
{
	EXPECT_TRUE(ParsesAsObject(TEXT(" {\"a\": [1, -2.5e3, TRUE, False, NULL]} \r\n")));
	EXPECT_TRUE(ParsesAsObject(TEXT("{\"raw\": \"tab\there\"}")));
	TSharedPtr<FJsonObject> Escapes = ParseJsonObject(FString(TEXT("{\"s\": \"\\u00e9\\ud83d\\ude00\\/\"}")));
	ASSERT_TRUE(Escapes.IsValid());
	EXPECT_EQ(UECompatToUtf8(Escapes->GetStringField(TEXT("s"))), std::string("\xC3\xA9\xF0\x9F\x98\x80/"));
	TSharedPtr<FJsonValue> ArrayRoot;
	EXPECT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(TEXT("[1,{}]")), ArrayRoot));
	EXPECT_EQ(ArrayRoot->Type, EJson::Array);
}

TEST(CompatJsonReader, RefusesWhatTheEngineRefuses)
{
	const TCHAR* const Refused[] = {
		TEXT(""), TEXT("   "), TEXT("42"), TEXT("\"text\""), TEXT("true"), TEXT("[1]"),
		TEXT("{} x"), TEXT("{\"a\": 01}"), TEXT("{\"a\": .5}"), TEXT("{\"a\": 1.}"), TEXT("{\"a\": +1}"),
		TEXT("{\"a\": \"\\x\"}"), TEXT("{\"a\": 1,}"), TEXT("{\"a\" 1}"), TEXT("{a: 1}"), TEXT("{\"a\": \"open}"),
		TEXT("{\"a\": inf}")};
	for (const TCHAR* Text : Refused)
	{
		EXPECT_FALSE(ParsesAsObject(Text)) << UECompatToUtf8(FStringView(Text));
	}
	const TSharedRef<TJsonReader<>> Reader = TJsonReaderFactory<>::Create(TEXT("{} trailing"));
	TSharedPtr<FJsonObject> Object;
	EXPECT_FALSE(FJsonSerializer::Deserialize(Reader, Object));
	EXPECT_TRUE(Reader->GetErrorMessage().Contains(TEXT("Unexpected additional input found.")));
}

TEST(CompatJsonReader, HostileNestingIsRefusedWithoutCrashing)
{
	const std::string Deep = "{\"a\":" + std::string(100000, '[') + std::string(100000, ']') + "}";
	EXPECT_FALSE(ParseJsonObject(Deep).IsValid());
	const std::string Allowed = "{\"a\":" + std::string(200, '[') + std::string(200, ']') + "}";
	EXPECT_TRUE(ParseJsonObject(Allowed).IsValid());
}

TEST(CompatJsonValue, AnObjectAskedOfAnythingElseIsTheSharedEmptyObject)
{
	// AsObject on a non-object logs and returns the engine's EMPTY_OBJECT, a valid pointer, and
	// GetObjectField on a missing field goes through the same path (unreal-api-core.md §3.2-3.3).
	FLogCapture Log;
	const TSharedPtr<FJsonValue> Number = MakeShared<FJsonValueNumber>(1.0);
	const TSharedPtr<FJsonObject>& FromNumber = Number->AsObject();
	ASSERT_TRUE(FromNumber.IsValid());
	EXPECT_EQ(FromNumber->Values.Num(), 0);
	EXPECT_EQ(Log.VerbosityOf(TEXT("Json Value of type 'Number' used as a 'Object'.")), ELogVerbosity::Error);

	const TSharedPtr<FJsonObject> Root = MakeShared<FJsonObject>();
	Root->SetStringField(TEXT("text"), TEXT("x"));
	EXPECT_TRUE(Root->GetObjectField(TEXT("missing")).IsValid());
	EXPECT_TRUE(Root->GetObjectField(TEXT("text")).IsValid());
	EXPECT_EQ(Root->GetObjectField(TEXT("missing"))->Values.Num(), 0);
}
