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
}
