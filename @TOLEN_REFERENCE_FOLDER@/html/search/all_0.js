var searchData=
[
  ['api_20reference_0',['API reference',['../index.html',1,'']]]
];
