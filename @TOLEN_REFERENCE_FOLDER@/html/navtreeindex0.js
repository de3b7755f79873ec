var NAVTREEINDEX0 =
{
"index.html":[],
"index.html":[0],
"index.html#autotoc_md1":[0,0],
"index.html#autotoc_md2":[0,1],
"index.html#autotoc_md3":[0,2],
"index.html#autotoc_md4":[0,3],
"index.html#autotoc_md5":[0,4],
"pages.html":[]
};
