#pragma once
// The kinds a display template stores by number, as the program handles them.

// What the bottom axis counts: seconds from the first time, a time from the first time, or
// the date and time.
enum class TTimeAxisType : int { Seconds = 0, TimeFromStart = 1, DateTime = 2 };

// How a curve is drawn.
enum class TCurveType : int { Line = 0, LineAndPoints = 1, Points = 2 };
