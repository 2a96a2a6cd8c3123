#include <QImage>
#include <tracebitmap.h>
#include <cstdio>
#include <cstdlib>
int main(int argc,char**argv){OvTraceBitmap t; t.setOption("monochrome",0); auto l=t.trace(QString::fromLocal8Bit(argv[1])); std::printf("%d\n",(int)l.size());}
