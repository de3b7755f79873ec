var indexSectionsWithContent =
{
  0: "a",
  1: "a"
};

var indexSectionNames =
{
  0: "all",
  1: "pages"
};

var indexSectionLabels =
{
  0: "All",
  1: "Pages"
};

