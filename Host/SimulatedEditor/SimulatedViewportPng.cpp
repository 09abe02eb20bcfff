// A small PNG writer and reader without dependencies: the writer filters each row (None, Sub or
// Up, whichever leaves the smallest residue) and deflates with the fixed Huffman code and runs
// of repeated bytes, which is compact enough for the viewport render's flat colours.
#include "SimulatedViewport.h"

#include <cstdlib>
#include <vector>

namespace
{
	const uint16 SimPngLengthBase[29] = {3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 15, 17, 19, 23, 27, 31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
	const uint8 SimPngLengthExtra[29] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
	const uint16 SimPngDistanceBase[30] = {1, 2, 3, 4, 5, 7, 9, 13, 17, 25, 33, 49, 65, 97, 129, 193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
	const uint8 SimPngDistanceExtra[30] = {0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

	uint32 SimPngCrc(const uint8* Data, size_t Size, uint32 Crc = 0xFFFFFFFFu)
	{
		static uint32 Table[256];
		static bool bTableReady = false;
		if (!bTableReady)
		{
			for (uint32 Index = 0; Index < 256; ++Index)
			{
				uint32 Value = Index;
				for (int32 Bit = 0; Bit < 8; ++Bit)
				{
					Value = (Value & 1) ? 0xEDB88320u ^ (Value >> 1) : Value >> 1;
				}
				Table[Index] = Value;
			}
			bTableReady = true;
		}
		for (size_t Index = 0; Index < Size; ++Index)
		{
			Crc = Table[(Crc ^ Data[Index]) & 0xFF] ^ (Crc >> 8);
		}
		return Crc;
	}

	uint32 SimPngAdler(const std::vector<uint8>& Data)
	{
		uint32 A = 1;
		uint32 B = 0;
		for (uint8 Byte : Data)
		{
			A = (A + Byte) % 65521u;
			B = (B + A) % 65521u;
		}
		return (B << 16) | A;
	}

	struct FSimPngBitWriter
	{
		std::vector<uint8> Bytes;
		uint32 Buffer = 0;
		int32 Count = 0;

		// Bits go in least significant first.
		void Write(uint32 Value, int32 BitCount)
		{
			for (int32 Bit = 0; Bit < BitCount; ++Bit)
			{
				Buffer |= ((Value >> Bit) & 1u) << Count;
				if (++Count == 8)
				{
					Bytes.push_back((uint8)Buffer);
					Buffer = 0;
					Count = 0;
				}
			}
		}

		// Huffman codes go in most significant bit first.
		void WriteCode(uint32 Code, int32 BitCount)
		{
			for (int32 Bit = BitCount - 1; Bit >= 0; --Bit)
			{
				Write((Code >> Bit) & 1u, 1);
			}
		}

		void Flush()
		{
			if (Count > 0)
			{
				Bytes.push_back((uint8)Buffer);
				Buffer = 0;
				Count = 0;
			}
		}
	};

	void SimPngWriteLiteral(FSimPngBitWriter& Writer, uint32 Symbol)
	{
		if (Symbol < 144)
		{
			Writer.WriteCode(0x30 + Symbol, 8);
		}
		else if (Symbol < 256)
		{
			Writer.WriteCode(0x190 + (Symbol - 144), 9);
		}
		else if (Symbol < 280)
		{
			Writer.WriteCode(Symbol - 256, 7);
		}
		else
		{
			Writer.WriteCode(0xC0 + (Symbol - 280), 8);
		}
	}

	void SimPngWriteRun(FSimPngBitWriter& Writer, int32 Length)
	{
		int32 Code = 28;
		while (SimPngLengthBase[Code] > Length)
		{
			--Code;
		}
		SimPngWriteLiteral(Writer, 257 + (uint32)Code);
		Writer.Write((uint32)(Length - SimPngLengthBase[Code]), SimPngLengthExtra[Code]);
		// Distance 1: code 0, five bits, no extra bits.
		Writer.WriteCode(0, 5);
	}

	std::vector<uint8> SimPngDeflate(const std::vector<uint8>& Data)
	{
		FSimPngBitWriter Writer;
		Writer.Write(1, 1);
		Writer.Write(1, 2);
		size_t Index = 0;
		while (Index < Data.size())
		{
			SimPngWriteLiteral(Writer, Data[Index]);
			size_t Run = 0;
			while (Index + 1 + Run < Data.size() && Data[Index + 1 + Run] == Data[Index] && Run < 258)
			{
				++Run;
			}
			if (Run >= 3)
			{
				SimPngWriteRun(Writer, (int32)Run);
				Index += 1 + Run;
			}
			else
			{
				++Index;
			}
		}
		SimPngWriteLiteral(Writer, 256);
		Writer.Flush();
		return Writer.Bytes;
	}

	void SimPngAppendBigEndian(std::vector<uint8>& Out, uint32 Value)
	{
		Out.push_back((uint8)(Value >> 24));
		Out.push_back((uint8)(Value >> 16));
		Out.push_back((uint8)(Value >> 8));
		Out.push_back((uint8)Value);
	}

	void SimPngAppendChunk(std::vector<uint8>& Out, const char* Type, const std::vector<uint8>& Data)
	{
		SimPngAppendBigEndian(Out, (uint32)Data.size());
		const size_t TypeStart = Out.size();
		for (int32 Index = 0; Index < 4; ++Index)
		{
			Out.push_back((uint8)Type[Index]);
		}
		Out.insert(Out.end(), Data.begin(), Data.end());
		SimPngAppendBigEndian(Out, SimPngCrc(&Out[TypeStart], Out.size() - TypeStart) ^ 0xFFFFFFFFu);
	}

	struct FSimPngBitReader
	{
		const std::vector<uint8>& Bytes;
		size_t Position = 0;
		int32 Bit = 0;

		explicit FSimPngBitReader(const std::vector<uint8>& InBytes)
			: Bytes(InBytes)
		{
		}

		bool Read(int32 BitCount, uint32& OutValue)
		{
			OutValue = 0;
			for (int32 Index = 0; Index < BitCount; ++Index)
			{
				if (Position >= Bytes.size())
				{
					return false;
				}
				OutValue |= ((uint32)(Bytes[Position] >> Bit) & 1u) << Index;
				if (++Bit == 8)
				{
					Bit = 0;
					++Position;
				}
			}
			return true;
		}

		bool ReadCode(int32 BitCount, uint32& InOutCode)
		{
			for (int32 Index = 0; Index < BitCount; ++Index)
			{
				uint32 Next = 0;
				if (!Read(1, Next))
				{
					return false;
				}
				InOutCode = (InOutCode << 1) | Next;
			}
			return true;
		}

		bool ReadFixedSymbol(uint32& OutSymbol)
		{
			uint32 Code = 0;
			if (!ReadCode(7, Code))
			{
				return false;
			}
			if (Code <= 0x17)
			{
				OutSymbol = 256 + Code;
				return true;
			}
			if (!ReadCode(1, Code))
			{
				return false;
			}
			if (Code >= 0x30 && Code <= 0xBF)
			{
				OutSymbol = Code - 0x30;
				return true;
			}
			if (Code >= 0xC0 && Code <= 0xC7)
			{
				OutSymbol = 280 + (Code - 0xC0);
				return true;
			}
			if (!ReadCode(1, Code))
			{
				return false;
			}
			OutSymbol = 144 + (Code - 0x190);
			return Code >= 0x190 && Code <= 0x1FF;
		}
	};

	bool SimPngInflate(const std::vector<uint8>& Data, std::vector<uint8>& Out)
	{
		FSimPngBitReader Reader(Data);
		uint32 bFinal = 0;
		while (!bFinal)
		{
			uint32 Type = 0;
			if (!Reader.Read(1, bFinal) || !Reader.Read(2, Type))
			{
				return false;
			}
			if (Type == 0)
			{
				if (Reader.Bit != 0)
				{
					Reader.Bit = 0;
					++Reader.Position;
				}
				if (Reader.Position + 4 > Data.size())
				{
					return false;
				}
				const uint32 Length = Data[Reader.Position] | (Data[Reader.Position + 1] << 8);
				Reader.Position += 4;
				if (Reader.Position + Length > Data.size())
				{
					return false;
				}
				Out.insert(Out.end(), Data.begin() + (std::ptrdiff_t)Reader.Position, Data.begin() + (std::ptrdiff_t)(Reader.Position + Length));
				Reader.Position += Length;
				continue;
			}
			if (Type != 1)
			{
				return false;
			}
			for (;;)
			{
				uint32 Symbol = 0;
				if (!Reader.ReadFixedSymbol(Symbol))
				{
					return false;
				}
				if (Symbol < 256)
				{
					Out.push_back((uint8)Symbol);
					continue;
				}
				if (Symbol == 256)
				{
					break;
				}
				const uint32 LengthCode = Symbol - 257;
				uint32 Extra = 0;
				uint32 DistanceCode = 0;
				if (LengthCode >= 29 || !Reader.Read(SimPngLengthExtra[LengthCode], Extra) || !Reader.ReadCode(5, DistanceCode) || DistanceCode >= 30)
				{
					return false;
				}
				const uint32 Length = SimPngLengthBase[LengthCode] + Extra;
				if (!Reader.Read(SimPngDistanceExtra[DistanceCode], Extra))
				{
					return false;
				}
				const size_t Distance = SimPngDistanceBase[DistanceCode] + Extra;
				if (Distance > Out.size())
				{
					return false;
				}
				for (uint32 Index = 0; Index < Length; ++Index)
				{
					Out.push_back(Out[Out.size() - Distance]);
				}
			}
		}
		return true;
	}

	uint32 SimPngReadBigEndian(const TArray<uint8>& Data, int32 Offset)
	{
		return ((uint32)Data[Offset] << 24) | ((uint32)Data[Offset + 1] << 16) | ((uint32)Data[Offset + 2] << 8) | (uint32)Data[Offset + 3];
	}
}

TArray<uint8> SimulatedEncodePng(int32 Width, int32 Height, const TArray<uint8>& BgraPixels)
{
	TArray<uint8> Result;
	if (Width <= 0 || Height <= 0 || BgraPixels.Num() != Width * Height * 4)
	{
		return Result;
	}
	const size_t Stride = (size_t)Width * 4;
	std::vector<uint8> Filtered;
	Filtered.reserve((Stride + 1) * Height);
	std::vector<uint8> Row(Stride);
	std::vector<uint8> Previous(Stride, 0);
	std::vector<uint8> Candidates[3] = {std::vector<uint8>(Stride), std::vector<uint8>(Stride), std::vector<uint8>(Stride)};
	for (int32 Y = 0; Y < Height; ++Y)
	{
		for (int32 X = 0; X < Width; ++X)
		{
			const int32 Source = (Y * Width + X) * 4;
			Row[(size_t)X * 4 + 0] = BgraPixels[Source + 2];
			Row[(size_t)X * 4 + 1] = BgraPixels[Source + 1];
			Row[(size_t)X * 4 + 2] = BgraPixels[Source + 0];
			Row[(size_t)X * 4 + 3] = BgraPixels[Source + 3];
		}
		// None, Sub and Up; the one with the smallest sum of signed residues wins.
		uint64 BestScore = ~0ull;
		int32 BestFilter = 0;
		for (int32 Filter = 0; Filter < 3; ++Filter)
		{
			uint64 Score = 0;
			for (size_t Index = 0; Index < Stride; ++Index)
			{
				const uint8 Left = Index >= 4 ? Row[Index - 4] : 0;
				const uint8 Value = Filter == 0 ? Row[Index] : (uint8)(Row[Index] - (Filter == 1 ? Left : Previous[Index]));
				Candidates[Filter][Index] = Value;
				Score += (uint64)std::abs((int32)(int8)Value);
			}
			if (Score < BestScore)
			{
				BestScore = Score;
				BestFilter = Filter;
			}
		}
		Filtered.push_back((uint8)BestFilter);
		Filtered.insert(Filtered.end(), Candidates[BestFilter].begin(), Candidates[BestFilter].end());
		Previous = Row;
	}
	std::vector<uint8> Png = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
	std::vector<uint8> Header;
	SimPngAppendBigEndian(Header, (uint32)Width);
	SimPngAppendBigEndian(Header, (uint32)Height);
	Header.insert(Header.end(), {8, 6, 0, 0, 0});
	SimPngAppendChunk(Png, "IHDR", Header);
	std::vector<uint8> Zlib = {0x78, 0x01};
	const std::vector<uint8> Deflated = SimPngDeflate(Filtered);
	Zlib.insert(Zlib.end(), Deflated.begin(), Deflated.end());
	SimPngAppendBigEndian(Zlib, SimPngAdler(Filtered));
	SimPngAppendChunk(Png, "IDAT", Zlib);
	SimPngAppendChunk(Png, "IEND", {});
	Result.SetNumUninitialized((int32)Png.size());
	for (size_t Index = 0; Index < Png.size(); ++Index)
	{
		Result[(int32)Index] = Png[Index];
	}
	return Result;
}

bool SimulatedDecodePng(const TArray<uint8>& Png, int32& OutWidth, int32& OutHeight, TArray<uint8>& OutRgbaPixels)
{
	const uint8 Signature[8] = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
	if (Png.Num() < 8)
	{
		return false;
	}
	for (int32 Index = 0; Index < 8; ++Index)
	{
		if (Png[Index] != Signature[Index])
		{
			return false;
		}
	}
	int32 Channels = 0;
	std::vector<uint8> Compressed;
	OutWidth = 0;
	OutHeight = 0;
	for (int32 Offset = 8; Offset + 12 <= Png.Num();)
	{
		const uint32 Length = SimPngReadBigEndian(Png, Offset);
		if ((int64)Offset + 12 + Length > Png.Num())
		{
			return false;
		}
		const uint32 Crc = SimPngCrc(&Png[Offset + 4], Length + 4) ^ 0xFFFFFFFFu;
		if (Crc != SimPngReadBigEndian(Png, Offset + 8 + (int32)Length))
		{
			return false;
		}
		const FString Type = FString::Printf(TEXT("%c%c%c%c"), Png[Offset + 4], Png[Offset + 5], Png[Offset + 6], Png[Offset + 7]);
		const int32 DataStart = Offset + 8;
		if (Type == TEXT("IHDR") && Length == 13)
		{
			OutWidth = (int32)SimPngReadBigEndian(Png, DataStart);
			OutHeight = (int32)SimPngReadBigEndian(Png, DataStart + 4);
			const uint8 ColorType = Png[DataStart + 9];
			if (Png[DataStart + 8] != 8 || (ColorType != 6 && ColorType != 2) || Png[DataStart + 12] != 0)
			{
				return false;
			}
			Channels = ColorType == 6 ? 4 : 3;
		}
		else if (Type == TEXT("IDAT"))
		{
			Compressed.insert(Compressed.end(), &Png[DataStart], &Png[DataStart] + Length);
		}
		else if (Type == TEXT("IEND"))
		{
			break;
		}
		Offset += 12 + (int32)Length;
	}
	if (Channels == 0 || OutWidth <= 0 || OutHeight <= 0 || Compressed.size() < 6)
	{
		return false;
	}
	std::vector<uint8> Filtered;
	if (!SimPngInflate(std::vector<uint8>(Compressed.begin() + 2, Compressed.end() - 4), Filtered))
	{
		return false;
	}
	const size_t Stride = (size_t)OutWidth * Channels;
	if (Filtered.size() != (Stride + 1) * OutHeight)
	{
		return false;
	}
	std::vector<uint8> Previous(Stride, 0);
	std::vector<uint8> Row(Stride);
	OutRgbaPixels.SetNumUninitialized(OutWidth * OutHeight * 4);
	for (int32 Y = 0; Y < OutHeight; ++Y)
	{
		const uint8 Filter = Filtered[(Stride + 1) * Y];
		for (size_t Index = 0; Index < Stride; ++Index)
		{
			const int32 Raw = Filtered[(Stride + 1) * Y + 1 + Index];
			const int32 Left = Index >= (size_t)Channels ? Row[Index - Channels] : 0;
			const int32 Up = Previous[Index];
			const int32 UpLeft = Index >= (size_t)Channels ? Previous[Index - Channels] : 0;
			int32 Predictor = 0;
			switch (Filter)
			{
			case 0: Predictor = 0; break;
			case 1: Predictor = Left; break;
			case 2: Predictor = Up; break;
			case 3: Predictor = (Left + Up) / 2; break;
			case 4:
			{
				const int32 Estimate = Left + Up - UpLeft;
				const int32 DistanceLeft = std::abs(Estimate - Left);
				const int32 DistanceUp = std::abs(Estimate - Up);
				const int32 DistanceUpLeft = std::abs(Estimate - UpLeft);
				Predictor = (DistanceLeft <= DistanceUp && DistanceLeft <= DistanceUpLeft) ? Left : (DistanceUp <= DistanceUpLeft ? Up : UpLeft);
				break;
			}
			default: return false;
			}
			Row[Index] = (uint8)(Raw + Predictor);
		}
		for (int32 X = 0; X < OutWidth; ++X)
		{
			for (int32 Channel = 0; Channel < 4; ++Channel)
			{
				OutRgbaPixels[(Y * OutWidth + X) * 4 + Channel] = Channel < Channels ? Row[(size_t)X * Channels + Channel] : 255;
			}
		}
		Previous = Row;
	}
	return true;
}
