from imagefiles import gif, png
def paint(save):
    def flat(path,w,h,c,top=0):
        px=bytearray([1])*(w*h)
        for i in range(w*top): px[i]=0
        p=(w,h,bytes(px),[(255,0,255),c,(0,0,0),(255,255,255)])
        save(path,(png if path.endswith('png') else gif)(p))
    for n,c in (('title',(30,30,60)),('select',(30,40,60)),('loading',(10,10,20)),('complete',(40,30,50))): flat('bgs/%s.gif'%n,480,272,c)
    flat('bgs/row/sky.gif',480,200,(40,40,90)); flat('bgs/row/towers.gif',320,100,(50,40,90),40); flat('bgs/row/roofs.gif',320,100,(70,50,90),50)
    for l in 'abc': flat('bgs/row/street_%s.gif'%l,480,272,(90,80,80),170)
    flat('bgs/row/lamp.gif',24,140,(20,20,30)); flat('bgs/row/front.png',320,272,(10,10,20),250)
    flat('bgs/docks/sky.gif',480,140,(20,30,60)); flat('bgs/docks/bank.gif',320,70,(30,30,60),20); flat('bgs/docks/water.gif',480,50,(20,50,90))
    for l in ('quay_a','quay_b','ferry'): flat('bgs/docks/%s.gif'%l,480,272,(90,70,60),176)
    flat('bgs/docks/bollard.gif',40,76,(20,20,30)); flat('bgs/docks/front.png',320,272,(10,10,20),250)
    for n in ('intro1','intro2','intro3','intro4','bridge','ending1','ending2'): flat('scenes/%s.gif'%n,480,272,(20,20,40))
