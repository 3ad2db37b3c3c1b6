# Tests that cannot hold where the device is the system's own, by room.

# They look into the software device's trace, make its printer page or settle its display.
set(host_only_canvas
  CanvasBlits.EdgesAreTranslatedByTheirTables
  CanvasBlits.EveryOperationReachesTheDeviceWithItsNumber
  CanvasDevice.SystemColoursAreAskedForWithTheFlagOnTheFirstTwo
  CanvasDevice.QueriesAnswerTheDeviceAndNothingWhenDetached
  DrawingCoordinates.RotatedViewTurnsPointsButNotFillRect
  DrawingCoordinates.ReachTheDeviceAsStated
  DrawingLists.BadListsDrawNothing
  DrawingLists.PointsOnOnePixelAreDrawnOnce
  DrawingOrder.ToolsAreValidatedBeforeTheFigure
  CanvasErrors.PlgBltMakesTheMaskFirst
  ListClipping.ListsAreCutDrawnOrLeftOut
  RubberBandPolygon.ClosesAndFillsAsStated
  TextTest.HaloIsTheTextMovedInFourDirections
  TextTest.HiddenLineEndsEverythingAsItStands
  TextTest.LinesStandWhereTheAlignmentSays
  TextTest.OutlinesAreWhatStyleAndBackgroundAskFor
  TextTest.TurnedLinesTurnAboutTheCornerCounterClockwise
  TextTest.TurnedViewsCarryTheMiddleAlong)
set(host_only_tools
  Background.OnlyWhatChangedReachesTheDevice
  BrushTest.OriginReachesTheDeviceWithoutANewBrush
  BrushTest.SystemColourBrushIsTakenAtOnceAndWithoutRecord
  ExtendedPen.EndingsAreWhatTheEndTypeSays
  Pen.ValidateMakesWhatTypeAndStyleAskForAndReleaseEndsIt
  Pen.OnlyTheRightSettersHaveThePenMadeAnew
  ToolMessages.BrushOriginTravelsInOneValueAndIsStoredSilently
  ToolMessages.InvalidatingHasTheDeviceObjectMadeAnew)

# The system does not select bitmaps of another depth than the screen's.
list(APPEND host_only_tools Palette.RealisedOnceItColoursBitmapsOfFewColours)

# The system refuses lines of these lengths.
list(APPEND host_only_tools ExtendedPen.LinesFromFarAwayKeepStep)

# The system ends when it is to draw and its table of objects is full.
list(APPEND host_only_tools ExtendedPen.FailureLeavesTheDeviceAsItWas)

# Its judge is the C library, and this one puts a blank before unsigned numbers, which have no sign to make room for.
set(host_only_kernel StringFormatTest.NumbersPrintAsTheCLibraryPrintsThem)

# Its judge is the C library, whose sines there lose their last bits near whole turns.
set(host_only_geometry Trigonometry.IsWithinUnitsInTheLastPlace)

# Resources that the program registers, and printer pages.
set(host_only_sources resource_test.cpp)
