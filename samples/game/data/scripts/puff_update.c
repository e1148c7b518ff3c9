// As steam does: the wider, the lower. In 256ths of his size.
void breathe_in(void self, float more)
{
	changedrawmethod(self, "enabled", 1);
	changedrawmethod(self, "scalex", 256 + more);
	changedrawmethod(self, "scaley", 256 - more);
}

// Every tick: Puff floats up and down, and once a second he mends a little.
void main()
{
	void self = getlocalvar("self");
	void owner = getlocalvar("parent");
	int now = openborvariant("elapsed_time");
	int health = getentityproperty(owner, "health");
	if(now % 60 == 0 && health > 0 && health < getentityproperty(owner, "maxhealth")){
		changeentityproperty(owner, "health", health + 2);
		playsound("data/sounds/ting.wav");
	}
	changeentityproperty(self, "a", 40 + sin(now * 0.08) * 5);
	breathe_in(self, sin(now * 0.1) * 24);
}
